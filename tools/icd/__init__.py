"""The description of the instrument's information model, and what turns it into an SCL file."""
