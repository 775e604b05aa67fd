"""Checks what kpifc extract wrote against the records of the file that it was extracted from.

Usage: check_extract.py FOLDER_OF_P21 FILE SCHEMA_FACTS (NAME EXTRACT)...

NAME is "#15", a GlobalId or an entity. Reads all files with the independent reader in the given folder. Each extract has
to be whole (no reference to nothing, no value lost but members of relations that are not there), has to hold what
belongs to the choice, and no product besides. Prints how much was checked and how much is wrong; the exit code is 1 where
anything is.
"""
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, sys.argv[1])
import p21  # noqa: E402

# relation: whole, parts, whether parts bring their whole along
WHOLES = {"IfcRelDecomposes": ("RelatingObject", "RelatedObjects", True),
          "IfcRelContainedInSpatialStructure": ("RelatingStructure", "RelatedElements", True),
          "IfcRelVoidsElement": ("RelatingBuildingElement", "RelatedOpeningElement", True),
          "IfcRelProjectsElement": ("RelatingElement", "RelatedFeatureElement", True),
          "IfcRelFillsElement": ("RelatingOpeningElement", "RelatedBuildingElement", False),
          "IfcRelConnectsPortToElement": ("RelatedElement", "RelatingPort", True)}
ADDITIONS = {"IfcStyledItem": "Item", "IfcPresentationLayerAssignment": "AssignedItems",
             "IfcShapeAspect": "PartOfProductDefinitionShape",
             "IfcMaterialDefinitionRepresentation": "RepresentedMaterial"}
REDUCED = ("IfcRelationship", "IfcPresentationLayerAssignment")


def refs(value):
    if isinstance(value, p21.Ref):
        yield value.id
    elif isinstance(value, (list, p21.Typed)):
        for v in value if isinstance(value, list) else value.args:
            yield from refs(v)


def plain(value):
    """Numbers by their value: 0 and 0. are the same real."""
    if isinstance(value, p21.Num):
        return p21.Num(float(value.value), False)
    if isinstance(value, p21.Typed):
        return p21.Typed(value.name, plain(value.args))
    return [plain(v) for v in value] if isinstance(value, list) else value


class Model:
    def __init__(self, path, schema):
        self.schema = schema
        self.header, self.data = p21.parse(path)
        self.of_type = {}
        for i, (name, _) in self.data.items():
            self.of_type.setdefault(schema.by_upper.get(name), []).append(i)

    def all(self, entity):
        return [i for t, ids in self.of_type.items() if t and self.schema.kind(t, entity) for i in ids]

    def is_kind(self, i, entity):
        name = self.schema.by_upper.get(self.data[i][0]) if i in self.data else None
        return name is not None and self.schema.kind(name, entity)

    def fields(self, i):
        return zip(self.schema.fields(self.schema.by_upper[self.data[i][0]]), self.data[i][1])

    def get(self, i, attribute):
        return {r for (n, *_), value in self.fields(i) if n == attribute for r in refs(value)} & self.data.keys()

    def chosen(self, name):
        if name.startswith("#"):
            return {int(name[1:])}
        if name in self.schema.entities:
            return set(self.all(name))
        return {i for i in self.all("IfcRoot") if self.data[i][1][0] == p21.Str(name)}


class Check:
    def __init__(self, model, name, part):
        self.model, self.name, self.part, self.count, self.wrong = model, name, part, 0, []
        chosen = model.chosen(name)
        self.expect(chosen, "a choice")
        self.is_whole()
        self.has(chosen, "chosen")
        self.has(model.all("IfcProject"), "project")
        self.objects(chosen)
        self.additions()

    def expect(self, holds, what):
        self.count += 1
        if not holds:
            self.wrong.append(what)

    def has(self, names, what):
        for i in names:
            self.expect(i in self.part.data, f"{what}: no #{i} {self.model.data[i][0]}")

    def is_whole(self):
        inside, order = self.part.data, {i: n for n, i in enumerate(self.model.data)}
        places = [order[i] for i in inside]
        self.expect(places == sorted(places), "order of the file")
        self.expect(self.part.header == self.model.header, "header")
        for i, (entity, values) in inside.items():
            if self.model.data[i][0] != entity:
                self.expect(False, f"#{i} was {self.model.data[i][0]}")
                continue
            if entity not in self.model.schema.by_upper:
                continue
            may_lose = any(self.model.is_kind(i, e) for e in REDUCED)
            for (attribute, kind, optional, _), new, old in zip(
                    self.model.schema.fields(self.model.schema.by_upper[entity]), values, self.model.data[i][1]):
                what = f"#{i} {entity}.{attribute}"
                self.expect(all(r in inside or r not in self.model.data for r in refs(new)), f"{what}: reference")
                if old and isinstance(old, list) and may_lose and attribute != "OverridingProperties":
                    old = [v for v in old if all(r in inside for r in refs(v))]
                    self.expect(old or optional, f"{what}: no members")
                if isinstance(old, list) and kind.startswith("set"):
                    old, new = (sorted(set(map(repr, v or []))) for v in (old, new))
                self.expect((plain(new) or None) == (plain(old) or None), f"{what}: {new} was {old}")

    def objects(self, chosen):
        """The products that belong to the choice, and what is said of them."""
        whole_of, parts_of = {}, {}
        for relation, (whole, parts, is_place) in WHOLES.items():
            for i in self.model.all(relation):
                for w in self.model.get(i, whole):
                    for p in self.model.get(i, parts):
                        parts_of.setdefault(w, set()).add(p)
                        if is_place:
                            whole_of.setdefault(p, set()).add(w)
        related = set()
        for relation in "IfcRelDefines", "IfcRelAssociates":
            for i in self.model.all(relation):
                related.add((i, frozenset(self.model.get(i, "RelatedObjects"))))
        down = self.closure({i for i in chosen if self.model.is_kind(i, "IfcObjectDefinition")}, parts_of)
        up = self.closure(down, whole_of)
        self.has(down, "part")
        self.has(up, "place")
        for i, members in related:
            if members & down:
                self.has([i], "what is said of objects")
                if i in self.part.data:
                    self.expect(self.part.get(i, "RelatedObjects") >= members & down, f"#{i}: members")
        for w, parts in whole_of.items():  # each part is in its whole in the extract, too
            if w in down:
                self.expect(any(w in {p for p in self.part.get(r, WHOLES[k][1])}
                                for k in WHOLES for r in self.part_relations(k, w)), f"#{w} has lost its place")
        needed = self.closure(chosen, {i: set(refs(list(values))) for i, (_, values) in self.model.data.items()})
        for i in self.part.all("IfcProduct"):
            self.expect(i in up or i in needed, f"#{i} {self.part.data[i][0]} does not belong here")

    def part_relations(self, kind, member):
        if not hasattr(self, "by_part"):
            self.by_part = {}
            for k, (_, parts, _) in WHOLES.items():
                for r in self.part.all(k):
                    for p in self.part.get(r, parts):
                        self.by_part.setdefault((k, p), []).append(r)
        return self.by_part.get((kind, member), ())

    @staticmethod
    def closure(start, step):
        found, todo = set(start), list(start)
        while todo:
            for i in step.get(todo.pop(), ()):
                if i not in found:
                    found.add(i)
                    todo.append(i)
        return found

    def additions(self):
        for entity, attribute in ADDITIONS.items():
            for i in self.model.all(entity):
                if self.model.get(i, attribute) & self.part.data.keys():
                    self.has([i], "addition")


def main():
    schema = p21.Schema(sys.argv[3])
    model = Model(sys.argv[2], schema)
    count, wrong = 0, 0
    for name, path in zip(sys.argv[4::2], sys.argv[5::2]):
        check = Check(model, name, Model(path, schema))
        count += check.count
        wrong += len(check.wrong)
        for line in check.wrong[:5]:
            print(f"{name}: {line}")
    print(f"{count} checks, {wrong} wrong")
    return wrong != 0


sys.exit(main())
