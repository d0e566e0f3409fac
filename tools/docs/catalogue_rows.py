"""The rows of the catalogue, as the pages and pictures show them."""
# SPDX-License-Identifier: Apache-2.0
import pathlib
import re
import tomllib

REPOSITORY = pathlib.Path(__file__).resolve().parents[2]
PIPELINE = REPOSITORY / re.search(r"TARVEX_PIPELINE \S*(catalogue/\w+)", (REPOSITORY / "CMakeLists.txt").read_text())[1]
NAME = tomllib.loads((PIPELINE / "pipeline.toml").read_text())["pipeline"]["name"]
PREFIX = f"p4_pd_{NAME}_"
RESOURCE_KINDS = ("counter", "meter", "wred", "register")


class Catalogue:
    """Groups, tables, actions, profiles and resources, tied to each other by name."""

    def __init__(self, folder=PIPELINE):
        self.groups, self.tables, self.parameters, self.about = {}, {}, {}, {}
        files = {path.stem: tomllib.loads(path.read_text()) for path in sorted(folder.glob("*.toml"))}
        for stem, rows in files.items():
            for action in rows.get("action", []):
                self.about[action["name"]] = action.get("about", "")
                self.parameters[action["name"]] = [{"display": "none", **each} for each in action.get("params", [])]
            for table in rows.get("table", []):
                self.tables[table["name"]] = {"actions": [], **table, "group": stem}
                self.tables[table["name"]]["fields"] = [{"match": "exact", "display": "none", **field}
                                                        for field in table.get("fields", [])]
        self.tables = dict(sorted(self.tables.items(), key=lambda item: item[1]["handle"]))
        for table in self.tables.values():
            stem = table["group"]
            group = self.groups.setdefault(stem, {"title": files[stem]["title"], "tables": []})
            group["tables"].append(table)
        self.profiles = {each["name"]: each for each in files["profiles"]["profile"]}
        self.resources = {each["handle"]: {"kind": "indirect", **each, "sort": sort}
                          for sort in RESOURCE_KINDS for each in files["resources"].get(sort, [])}
        self.hashes = files["hash_calculations"]["hash_calculation"]
        self.snapshots = [layout for stem in ("snapshot_ingress_fields", "snapshot_egress_fields")
                          for layout in files[stem]["snapshot_layout"]]

    def actions_of(self, table):
        """Actions of a table; of an indirect one those of its profile."""
        return self.profiles[table["profile"]]["actions"] if "profile" in table else table["actions"]

    def resources_of(self, table):
        """Resources that the actions of a table use, or that are told to be the table's."""
        used = {use["handle"] for action in self.actions_of(table) for use in action.get("resources", [])}
        return [each for handle, each in self.resources.items()
                if handle in used or each.get("table") == table["name"]]

    def values_between(self, giver, taker):
        """Names that actions of one group give and keys of another group look at."""
        given = {parameter["name"] for table in self.groups[giver]["tables"] for action in self.actions_of(table)
                 for parameter in self.parameters[action["name"]]}
        looked_at = {field["short"] for table in self.groups[taker]["tables"] for field in table["fields"]}
        return given & looked_at


def functions():
    """Every exported function."""
    lines = (REPOSITORY / "abi/exported_symbols.txt").read_text().split("\n")
    return [line for line in lines if line and not line.startswith("#")]
