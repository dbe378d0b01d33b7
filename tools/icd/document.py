"""The SCL document (IEC 61850-6 edition 1, kind ICD) around the devices."""

from icd.element import Element
from icd.reports import CLIENTS, REPORTS, SETS, blocks
from icd.types import Templates
from icd.values import instance

IED = "ZRX418"
ACCESS_POINT = "S1"
DATA_SETS = 20      # that the server holds, those of clients with them


def header():
    return Element("Header", {"id": IED, "version": "1", "revision": "0", "toolID": "make_icd",
                              "nameStructure": "IEDName"})


def communication():
    address = (("IP", "192.168.1.18"), ("IP-SUBNET", "255.255.255.0"), ("IP-GATEWAY", "192.168.1.1"),
               ("OSI-TSEL", "0001"), ("OSI-SSEL", "0001"), ("OSI-PSEL", "00000001"),
               ("OSI-AP-Title", "1,3,9999,33"), ("OSI-AE-Qualifier", "33"))
    return Element("Communication", children=[
        Element("SubNetwork", {"name": "NET1", "type": "8-MMS"}, [
            Element("BitRate", {"unit": "b/s", "multiplier": "M"}, text="100"),
            Element("ConnectedAP", {"iedName": IED, "apName": ACCESS_POINT}, [
                Element("Address", children=[Element("P", {"type": k}, text=v) for k, v in address]),
                Element("PhysConn", {"type": "Connection"}, [Element("P", {"type": "Plug"}, text="RJ45")]),
            ])])])


def private(kind, *children):
    return Element("Private", {"type": kind}, children)


def privates():
    """The maker's own sections: limits, local settings, a store of sections."""
    return [
        private("ORV_IedResources",
                Element("eorv:VisualDI", {"format": "Ind%d", "num": 8}),
                Element("eorv:GooseRx", {"max": 0, "uniqueAddr": "true"}),
                Element("eorv:GooseTx", {"minMaxTime": 1000, "maxBoolData": 0}),
                Element("eorv:Reports", {"maxDataSetSize": 64})),
        private("ORV_LocalConf", Element("eorv:Item", {"key": "vvaFormat", "val": 0})),
        private("ORV_IniConf",
                Element("eorv:Section", {"name": "Waveform"}, [
                    Element("eorv:Item", {"key": "Directory", "val": "/COMTRADE/waveRec/"}),
                    Element("eorv:Item", {"key": "Format", "val": "COMTRADE 1999"})])),
    ]


def services():
    fixed = {"cbName": "Fix", "datSet": "Fix"}
    return Element("Services", children=[
        Element("DynAssociation"),
        Element("SettingGroups", children=[Element("SGEdit"), Element("ConfSG")]),
        *(Element(name) for name in ("GetDirectory", "GetDataObjectDefinition", "DataObjectDirectory",
                                     "GetDataSetValue", "SetDataSetValue", "DataSetDirectory")),
        Element("ConfDataSet", {"max": DATA_SETS, "maxAttributes": 100, "modify": "false"}),
        Element("DynDataSet", {"max": DATA_SETS - len(SETS), "maxAttributes": 100}),
        Element("ReadWrite"),
        Element("ConfReportControl", {"max": CLIENTS * len(REPORTS)}),
        Element("GetCBValues"),
        Element("ConfLogControl", {"max": 8}),
        Element("ReportSettings", {**fixed, "rptID": "Fix", "optFields": "Dyn", "bufTime": "Dyn",
                                   "trgOps": "Dyn", "intgPd": "Dyn"}),
        Element("LogSettings", {**fixed, "logEna": "Dyn", "trgOps": "Dyn", "intgPd": "Dyn"}),
        Element("ConfLNs", {"fixPrefix": "true", "fixLnInst": "true"}),
        Element("FileHandling"),
    ])


def logicalNode(ld, ln, templates):
    attributes = {"prefix": ln.prefix or None, "lnClass": ln.cls, "inst": ln.inst,
                  "lnType": templates.lnType(ln), "desc": ln.desc}
    if ln.cls != "LLN0":
        return Element("LN", attributes, [instance(do) for do in ln.dos])
    control = Element("SettingControl", {"numOfSGs": ld.groups, "actSG": 1}) if ld.groups else None
    return Element("LN0", attributes, [*blocks(ld), *(instance(do) for do in ln.dos), control])


def scl(devices):
    templates = Templates()
    devices = [Element("LDevice", {"inst": ld.inst, "desc": ld.desc},
                       [logicalNode(ld, ln, templates) for ln in ld.lns]) for ld in devices]
    server = Element("Server", {"timeout": 30}, [Element("Authentication", {"none": "true"}), *devices])
    ied = Element("IED", {"name": IED, "desc": "Power quality monitor", "type": IED, "manufacturer": "ORV",
                          "configVersion": "1.0"},
                  [*privates(), services(), Element("AccessPoint", {"name": ACCESS_POINT}, [server])])
    return Element("SCL", {"xmlns": "http://www.iec.ch/61850/2003/SCL", "xmlns:eorv": "urn:orv:scl"},
                   [header(), communication(), ied, templates.element()])
