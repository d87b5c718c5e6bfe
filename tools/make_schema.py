#!/usr/bin/env python3
"""Writes ravikit/DTD/wml.xdr, the WML DTD as an XML-Data Reduced schema, from ravikit/DTD/wml.dtd.

Run it after a change to the DTD; a test holds the two against each other.
"""

import pathlib
import re
from xml.sax.saxutils import quoteattr

FOLDER = pathlib.Path(__file__).resolve().parent.parent / "ravikit" / "DTD"
OCCURS = {"": "", "?": ' minOccurs="0"', "*": ' minOccurs="0" maxOccurs="*"', "+": ' maxOccurs="*"'}
TYPES = {"ID": "id", "NMTOKEN": "nmtoken", "CDATA": "string"}


def declarations():
    """The bodies of the ELEMENT and ATTLIST declarations, parameter entities resolved."""
    text = re.sub(r"<!--.*?-->", "", (FOLDER / "wml.dtd").read_text(), flags=re.S)
    parameters = {}
    for kind, body in re.findall(r"<!(\w+)\s+(.*?)>", text, flags=re.S):
        body = re.sub(r"%(\w+);", lambda match: parameters[match[1]], body)
        parameter = re.fullmatch(r'%\s+(\w+)\s+"(.*)"\s*', body, flags=re.S)
        if parameter:
            parameters[parameter[1]] = parameter[2]
        elif kind != "ENTITY":
            yield kind, " ".join(body.split())


def particles(tokens):
    """A group from behind its bracket: (separator, members), a member being a name or a group,
    with how often it may stand."""
    separator, members = ",", []
    while True:
        token = tokens.pop(0)
        member = particles(tokens) if token == "(" else token
        members.append((member, tokens.pop(0) if tokens and tokens[0] in "?*+" else ""))
        after = tokens.pop(0)
        if after == ")":
            return separator, members
        separator = after


def write_group(group, indent):
    lines = []
    for member, occurs in group[1]:
        if isinstance(member, str):
            lines.append(f'{indent}<element type="{member}"{OCCURS[occurs]}/>')
        else:
            order = "one" if member[0] == "|" else "seq"
            lines.append(f'{indent}<group order="{order}"{OCCURS[occurs]}>')
            lines += write_group(member, indent + "  ")
            lines.append(f"{indent}</group>")
    return lines


def content(model):
    """The attributes of an ElementType, and its lines."""
    if model == "EMPTY":
        return ' content="empty"', []
    tokens = re.findall(r"[\w:#-]+|[(),|?*+]", model)
    if "#PCDATA" in tokens:
        names = [token for token in tokens if token[0].isalpha()]
        lines = [f'    <element type="{name}" minOccurs="0" maxOccurs="*"/>' for name in names]
        return ' content="mixed" order="many"', lines
    tokens.pop(0)
    group = particles(tokens)
    if len(tokens) == 1:  # the whole group repeats, so that it is a group inside another one
        group = (",", [(group, tokens[0])])
    order = "one" if group[0] == "|" else "seq"
    return f' content="eltOnly" order="{order}"', write_group(group, "    ")


def attributes(body):
    pattern = r'([\w:-]+) (\([^)]*\)|\w+) (#REQUIRED|#IMPLIED|(?:#FIXED )?"([^"]*)")'
    for name, kind, default, value in re.findall(pattern, body):
        line = f'    <AttributeType name="{name}"'
        if kind[0] == "(":
            values = " ".join(re.findall(r"[\w-]+", kind))
            line += f' dt:type="enumeration" dt:values="{values}"'
        else:
            line += f' dt:type="{TYPES[kind]}"'
        if default == "#REQUIRED":
            line += ' required="yes"'
        elif default != "#IMPLIED":
            line += f" default={quoteattr(value)}"
        yield line + "/>"
        yield f'    <attribute type="{name}"/>'


def main():
    elements, lists = {}, {}
    for kind, body in declarations():
        name, rest = body.split(" ", 1)
        (elements if kind == "ELEMENT" else lists)[name] = rest
    lines = [
        '<?xml version="1.0" encoding="UTF-8"?>',
        "<!-- The WML DTD as an XML-Data Reduced schema, written by tools/make_schema.py. -->",
        '<Schema name="wml"',
        '        xmlns="urn:schemas-microsoft-com:xml-data"',
        '        xmlns:dt="urn:schemas-microsoft-com:datatypes">',
    ]
    for name, model in elements.items():
        kind, inside = content(model)
        lines.append(f'  <ElementType name="{name}" model="closed"{kind}>')
        lines += attributes(lists.get(name, ""))
        lines += inside
        lines.append("  </ElementType>")
    lines.append("</Schema>")
    (FOLDER / "wml.xdr").write_text("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
