"""Drives the service as a program of Python's zeep does. The argument is the service's address. Prints one line for
each step, which the test compares."""

import datetime
import re
import sys
from xml.sax.saxutils import escape

import zeep
from zeep import xsd

SPACE = "http://quorvane.example/dev/ns/ivarnel/scriptwells"
SCRIPT_SPACE = "http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0"


def document_of(code):
    return f'<Scriptwell Language="JavaScript" xmlns="{SCRIPT_SPACE}"><Code>{escape(code)}</Code></Scriptwell>'


def main(address):
    client = zeep.Client(address + "/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx?wsdl")
    service = client.service
    usid = service.CreateUserSession("Username=joe;Password=x;")
    print("session", bool(re.fullmatch("[0-9a-f]{32}", usid)))
    print("number", repr(service.Execute(usid, document_of("6 * 7"))))
    print("text", ascii(service.Execute(usid, document_of("'a<b & \u00e9'"))))

    def any_object(kind, value):
        return xsd.AnyObject(kind, value)

    parameters = {
        "Parameter": [
            {"Name": "i", "Value": any_object(xsd.Int(), 5)},
            {"Name": "b", "Value": any_object(xsd.Boolean(), True)},
            {"Name": "t", "Value": "plain <text>"},
        ]
    }
    code = 'parameterList.map(p => [p.name, p.type, String(p.value)].join()).join("|")'
    print("parameters", service.Execute(usid, document_of(code), parameters))
    moment = datetime.datetime(2024, 3, 5, 10, 15, 30, 500000, datetime.timezone.utc)
    parameters = {"Parameter": [{"Name": "d", "Value": any_object(xsd.DateTime(), moment)}]}
    print("datetime", service.Execute(usid, document_of("parameters.d.toISOString()"), parameters))
    try:
        service.Execute(usid, document_of("\nfoo"))
    except zeep.exceptions.Fault as fault:
        print("fault", "Can't find variable: foo (line 2)" in fault.message)
    print("nothing", service.Execute(usid, document_of("undefined")))
    service.CloseUserSession(usid)
    try:
        service.Execute(usid, document_of("1"))
    except zeep.exceptions.Fault as fault:
        print("closed", "The session does not exist" in fault.message)


main(sys.argv[1])
