"""What the server expects of an SCL file, written down apart from the generator of the ICD."""
