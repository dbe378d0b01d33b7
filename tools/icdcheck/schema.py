"""Elements and attributes of SCL (IEC 61850-6 edition 1) as far as the server reads them: which
attributes must be there and may be there, and which children in which order."""

ANY = None

# element: (required attributes, further attributes, children in order); "+" behind a child is any number
ELEMENTS = {
    "SCL": ((), (), "Header Communication IED+ DataTypeTemplates"),
    "Header": (("id", "nameStructure"), ("version", "revision", "toolID"), "History"),
    "Communication": ((), (), "SubNetwork+"),
    "SubNetwork": (("name",), ("desc", "type"), "Text BitRate ConnectedAP+"),
    "BitRate": (("unit",), ("multiplier",), ""),
    "ConnectedAP": (("iedName", "apName"), ("desc",), "Address GSE+ SMV+ PhysConn+"),
    "Address": ((), (), "P+"),
    "PhysConn": (("type",), (), "P+"),
    "P": (("type",), (), ""),
    "IED": (("name",), ("desc", "type", "manufacturer", "configVersion"), "Private+ Services AccessPoint+"),
    "Private": (("type",), (), ANY),
    "Services": ((), (), ANY),
    "AccessPoint": (("name",), ("desc", "router", "clock"), "Server"),
    "Server": ((), ("desc", "timeout"), "Authentication LDevice+ Association+"),
    "Authentication": ((), ("none", "password", "weak", "strong", "certificate"), ""),
    "LDevice": (("inst",), ("desc",), "LN0 LN+"),
    "LN0": (("lnClass", "inst", "lnType"), ("desc",),
            "DataSet+ ReportControl+ LogControl+ DOI+ Inputs GSEControl+ SampledValueControl SettingControl"),
    "LN": (("lnClass", "inst", "lnType"), ("desc", "prefix"), "DataSet+ ReportControl+ LogControl+ DOI+ Inputs"),
    "DataSet": (("name",), ("desc",), "FCDA+"),
    "FCDA": (("fc",), ("ldInst", "prefix", "lnClass", "lnInst", "doName", "daName"), ""),
    "ReportControl": (("name", "rptID", "confRev"), ("desc", "datSet", "intgPd", "buffered", "bufTime"),
                      "TrgOps OptFields RptEnabled"),
    "TrgOps": ((), ("dchg", "qchg", "dupd", "period", "gi"), ""),
    "OptFields": ((), ("seqNum", "timeStamp", "dataSet", "reasonCode", "dataRef", "bufOvfl", "entryID", "configRef",
                       "segmentation"), ""),
    "RptEnabled": ((), ("desc", "max"), ""),
    "LogControl": (("name", "logName"), ("desc", "datSet", "intgPd", "logEna", "reasonCode"), "TrgOps"),
    "DOI": (("name",), ("desc", "ix", "accessControl"), ANY),
    "SDI": (("name",), ("desc", "ix"), ANY),
    "DAI": (("name",), ("desc", "sAddr", "valKind", "ix"), "Val"),
    "Val": ((), (), ""),
    "SettingControl": (("numOfSGs",), ("desc", "actSG"), ""),
    "DataTypeTemplates": ((), (), "LNodeType+ DOType+ DAType+ EnumType+"),
    "LNodeType": (("id", "lnClass"), ("desc", "iedType"), "DO+"),
    "DO": (("name", "type"), ("accessControl", "transient", "desc"), ""),
    "DOType": (("id", "cdc"), ("iedType",), ANY),
    "SDO": (("name", "type"), ("desc",), ""),
    "DA": (("name", "fc", "bType"), ("desc", "dchg", "qchg", "dupd", "sAddr", "type", "count", "valKind"), "Val"),
    "DAType": (("id",), (), "BDA+"),
    "BDA": (("name", "bType"), ("desc", "sAddr", "type", "count", "valKind"), ""),
    "EnumType": (("id",), ("desc",), "EnumVal+"),
    "EnumVal": (("ord",), (), ""),
}
# Children of elements whose order is free.
FREE = {
    "DOI": ("SDI", "DAI"), "SDI": ("SDI", "DAI"), "DOType": ("SDO", "DA"),
    "Services": (
        "DynAssociation", "SettingGroups", "SGEdit", "ConfSG", "GetDirectory", "GetDataObjectDefinition",
        "DataObjectDirectory", "GetDataSetValue", "SetDataSetValue", "DataSetDirectory", "ConfDataSet", "DynDataSet",
        "ReadWrite", "TimerActivatedControl", "ConfReportControl", "GetCBValues", "ConfLogControl", "ReportSettings",
        "LogSettings", "GSESettings", "SMVSettings", "ConfLNs", "GSEDir", "GOOSE", "GSSE", "FileHandling"),
}
PRIVATE = ("ORV_IedResources", "ORV_GooseSubscription", "ORV_LocalConf", "ORV_IniConf")
# Only the value of the first attribute of these says what they are.
KINDS = ("Private", "P", "PhysConn")


def faults(element, parent=""):
    """Texts about everything below `element` that the schema or the readers would not take."""
    name = element.tag
    if name not in ELEMENTS:
        if parent != "Services":
            yield "unknown element %s in %s" % (name, parent)
        return
    required, further, order = ELEMENTS[name]
    where = "%s %s" % (name, element.get("name") or element.get("id") or element.get("inst") or "")
    for attribute in required:
        if element.get(attribute) is None:
            yield "%s lacks the attribute %s" % (where, attribute)
    for attribute in element.keys():
        if attribute not in required + further:
            yield "%s has the unknown attribute %s" % (where, attribute)
    if name in KINDS and list(element.keys())[:1] != ["type"]:
        yield "%s does not begin with its type" % where
    if name == "Private":
        if parent != "IED" or element.get("type") not in PRIVATE:
            yield "%s %s in %s is ignored" % (where, element.get("type"), parent)
        return
    position = 0
    allowed = order.split() if order is not None else []
    for child in element:
        if name in FREE:
            if child.tag not in FREE[name]:
                yield "%s holds %s" % (where, child.tag)
        else:
            while position < len(allowed) and allowed[position].rstrip("+") != child.tag:
                position += 1
            if position == len(allowed):
                yield "%s holds %s, or holds it out of order" % (where, child.tag)
                break
            position += not allowed[position].endswith("+")
        yield from faults(child, name)
