"""Compares what kpifc props --json says with the records of the file.

Usage: check_props.py FOLDER_OF_P21 FILE SCHEMA_FACTS PROPS_JSON_LINES

Reads the file with the independent reader in the given folder and walks relations, types and sets on its own. Prints
how many values were compared and how many differ; the exit code is 1 where any does.
"""
import json
import sys
from collections import Counter

sys.dont_write_bytecode = True
sys.path.insert(0, sys.argv[1])
import p21  # noqa: E402

SINGLE = {"IFCPROPERTYSINGLEVALUE": "NominalValue"}
QUANTITIES = {f"IFCQUANTITY{n.upper()}": f"{n}Value" for n in ("Area", "Count", "Length", "Time", "Volume", "Weight")}
OTHERS = {"IFCPROPERTYBOUNDEDVALUE": "bounded", "IFCPROPERTYENUMERATEDVALUE": "enumerated",
          "IFCPROPERTYLISTVALUE": "list", "IFCPROPERTYTABLEVALUE": "table", "IFCPROPERTYREFERENCEVALUE": "reference"}
MEMBERS = {"IFCPROPERTYSET": "HasProperties", "IFCELEMENTQUANTITY": "Quantities",
           "IFCCOMPLEXPROPERTY": "HasProperties", "IFCPHYSICALCOMPLEXQUANTITY": "HasQuantities"}


class Model:
    def __init__(self, path, facts):
        self.schema = p21.Schema(facts)
        self.data = p21.parse(path)[1]
        self.kinds = {}

    def is_kind(self, i, of):
        name = self.schema.by_upper.get(self.data[i][0]) if i in self.data else None
        if name is None:
            return False
        key = name, of
        if key not in self.kinds:
            self.kinds[key] = self.schema.kind(name, of)
        return self.kinds[key]

    def get(self, i, attribute):
        name = self.schema.by_upper[self.data[i][0]]
        for (own, *_), value in zip(self.schema.fields(name), self.data[i][1]):
            if own == attribute:
                return value
        raise KeyError(attribute)

    def text(self, i, attribute):
        value = self.get(i, attribute)
        return value.value if isinstance(value, p21.Str) else ""

    def refs(self, i, attribute):
        value = self.get(i, attribute)
        value = value if isinstance(value, list) else [value]
        return sorted({r.id for r in value if isinstance(r, p21.Ref) and r.id in self.data})

    def entries(self, holder, prefix=""):
        """[(path, property, kind, value, measure)] of a set or complex property."""
        found = []
        for i in self.refs(holder, MEMBERS[self.data[holder][0]]):
            path, kind = prefix + self.text(i, "Name"), self.data[i][0]
            if kind in MEMBERS:
                found += self.entries(i, path + "/")
            elif kind in SINGLE:
                value = self.get(i, SINGLE[kind])
                typed = isinstance(value, p21.Typed)
                found.append((path, i, "single", plain(value.args[0]) if typed else None, value.name if typed else None))
            elif kind in QUANTITIES:
                found.append((path, i, "quantity", plain(self.get(i, QUANTITIES[kind])), None))
            elif kind in OTHERS:
                found.append((path, i, OTHERS[kind], None, None))
        return found

    def values(self):
        """{object: [(set, path, property, kind, value, measure, from type)]}"""
        own, types = {}, {}
        for i, (name, _) in self.data.items():
            if self.is_kind(i, "IfcTypeObject"):
                own.setdefault(i, []).extend(self.refs(i, "HasPropertySets"))
            elif self.is_kind(i, "IfcRelDefinesByProperties"):
                assert name != "IFCRELOVERRIDESPROPERTIES"
                for o in self.refs(i, "RelatedObjects"):
                    own.setdefault(o, []).extend(self.refs(i, "RelatingPropertyDefinition"))
            elif self.is_kind(i, "IfcRelDefinesByType"):
                for o in self.refs(i, "RelatedObjects"):
                    types.setdefault(o, []).extend(self.refs(i, "RelatingType"))
        result = {}
        for o in own.keys() | types.keys():
            inherited = [s for t in types.get(o, []) for s in self.refs(t, "HasPropertySets")]
            mine = self.of_sets(own.get(o, []), False)
            hidden = {v[:2] for v in mine}
            theirs = [s for s in inherited if s not in own.get(o, [])]
            result[o] = mine + [v for v in self.of_sets(theirs, True) if v[:2] not in hidden]
        return result

    def of_sets(self, sets, from_type):
        found = []
        for s in sorted(set(sets)):
            if self.data[s][0] in MEMBERS:
                name = self.text(s, "Name") or self.schema.by_upper[self.data[s][0]]
                found += [(name, *entry, from_type) for entry in self.entries(s)]
        return found


def plain(value):
    if isinstance(value, (p21.Str, p21.Num)):
        return value.value
    if isinstance(value, p21.Enum):
        return {"T": True, "F": False, "U": "UNKNOWN"}[value.value]
    return [plain(v) for v in value] if isinstance(value, list) else None


def frozen(value):
    return tuple(map(frozen, value)) if isinstance(value, list) else value


def main():
    model = Model(sys.argv[2], sys.argv[3])
    expected = Counter()
    for o, values in model.values().items():
        expected.update((o, *map(frozen, value)) for value in values)
    found = Counter()
    for line in open(sys.argv[4], encoding="utf-8"):
        o = json.loads(line)
        for p in o["properties"]:
            if p["kind"] == "attribute":
                continue
            is_single = p["kind"] == "single"
            value = p["value"] if is_single or p["kind"] == "quantity" else None
            measure = p["measure"].upper() if is_single and p["measure"] else None
            found[o["id"], p["set"], p["name"], p["property_id"], p["kind"], frozen(value), measure, p["from_type"]] += 1
    differences = list((expected - found).elements()) + list((found - expected).elements())
    for difference in differences[:10]:
        print(difference)
    counted = sum(n for key, n in expected.items() if key[4] in ("single", "quantity"))
    print(f"{counted} single values and quantities, {expected.total()} values, {len(differences)} differences")
    return bool(differences)


sys.exit(main())
