"""What SQLite itself says of a schema, in the form of `kelm-schema show --json`.

Reads sqlite_master and the PRAGMA statements, and shares no code with the program.
"""
import sqlite3


def quoted(name):
    return '"' + name.replace('"', '""') + '"'


def lower(name):
    """SQLite tells no plain letters apart by case."""
    return "".join(chr(ord(c) + 32) if "A" <= c <= "Z" else c for c in name)


class Oracle:
    def __init__(self, path):
        self.db = sqlite3.connect(f"file:{path}?mode=ro", uri=True)
        self.db.row_factory = sqlite3.Row
        rows = self.db.execute("SELECT rowid, type, name, tbl_name, sql FROM sqlite_master ORDER BY rowid").fetchall()
        rows = [row for row in rows if not lower(row["name"]).startswith("sqlite_")]
        self.of_type = {kind: [row for row in rows if row["type"] == kind]
                        for kind in ("table", "index", "view", "trigger")}
        self.kinds = {row["name"]: row for row in self.db.execute("PRAGMA main.table_list")}

    def pragma(self, what, name):
        return self.db.execute(f"PRAGMA main.{what}({quoted(name)})").fetchall()

    def schema(self):
        tables = [self.table(row) for row in self.by_name("table")]
        views = [self.view(row) for row in self.by_name("view")]
        counts = {
            "tables": len(self.of_type["table"]),
            "columns": sum(len(table["columns"]) for table in tables),
            "primary_keys": sum(table["primary_key"] is not None for table in tables),
            "foreign_keys": sum(len(table["foreign_keys"]) for table in tables),
            "indexes": len(self.of_type["index"]),
            "views": len(self.of_type["view"]),
            "triggers": len(self.of_type["trigger"]),
        }
        return {"counts": counts, "tables": tables, "views": views}

    def by_name(self, kind):
        return sorted(self.of_type[kind], key=lambda row: (lower(row["name"]).encode(), row["name"].encode()))

    def table(self, row):
        name = row["name"]
        kind = self.kinds[name]
        indexes = self.pragma("index_list", name)[::-1]
        return {
            "name": name,
            "virtual": kind["type"] == "virtual",
            "shadow": kind["type"] == "shadow",
            "without_rowid": bool(kind["wr"]),
            "strict": bool(kind["strict"]),
            "columns": self.columns(name),
            "primary_key": self.primary_key(name),
            "unique_keys": [self.terms(index["name"]) for index in indexes if index["origin"] == "u"],
            "foreign_keys": self.foreign_keys(name),
            "indexes": [self.index(index) for index in indexes if index["origin"] == "c"],
            "triggers": self.triggers(name),
            "sql": row["sql"],
        }

    def view(self, row):
        return {"name": row["name"], "columns": self.columns(row["name"]),
                "triggers": self.triggers(row["name"]), "sql": row["sql"]}

    def columns(self, name):
        return [{
            "name": row["name"],
            "type": row["type"],
            "not_null": bool(row["notnull"]),
            "default": row["dflt_value"],
            "generated": {2: "virtual", 3: "stored"}.get(row["hidden"]),
            "hidden": row["hidden"] == 1,
        } for row in self.pragma("table_xinfo", name)]

    def primary_key(self, name):
        columns = sorted((row["pk"], row["name"]) for row in self.pragma("table_xinfo", name) if row["pk"])
        return [column for _, column in columns] or None

    def terms(self, index):
        return [{"column": row["name"], "descending": bool(row["desc"]), "collation": row["coll"]}
                for row in self.pragma("index_xinfo", index) if row["key"]]

    def index(self, row):
        sql = next(made["sql"] for made in self.of_type["index"] if made["name"] == row["name"])
        return {"name": row["name"], "unique": bool(row["unique"]), "partial": bool(row["partial"]),
                "columns": self.terms(row["name"]), "sql": sql}

    def triggers(self, name):
        return [{"name": row["name"], "sql": row["sql"]} for row in self.of_type["trigger"]
                if lower(row["tbl_name"]) == lower(name)]

    def foreign_keys(self, name):
        keys = {}
        for row in self.pragma("foreign_key_list", name):
            keys.setdefault(row["id"], []).append(row)
        return [self.foreign_key(sorted(rows, key=lambda row: row["seq"])) for _, rows in sorted(keys.items())[::-1]]

    def foreign_key(self, rows):
        targets = [row["to"] for row in rows]
        table = next((made["name"] for made in self.of_type["table"]
                      if lower(made["name"]) == lower(rows[0]["table"])), None)
        if table is not None:
            have = {lower(row["name"]): row["name"] for row in self.pragma("table_xinfo", table)}
            primary = self.primary_key(table) or []
            if targets[0] is None and len(primary) == len(rows):
                targets = primary
            targets = [have.get(lower(to), to) if to is not None else None for to in targets]
        resolved = table is not None and all(to is not None and to in have.values() for to in targets)
        action = {"NO ACTION": None}
        return {
            "columns": [row["from"] for row in rows],
            "target_table": rows[0]["table"] if table is None else table,
            "target_columns": targets,
            "resolved": resolved,
            "on_delete": action.get(rows[0]["on_delete"], rows[0]["on_delete"]),
            "on_update": action.get(rows[0]["on_update"], rows[0]["on_update"]),
        }


def reduced(shown):
    """The program's answer without what no PRAGMA tells."""
    def column(entry):
        return {key: value for key, value in entry.items() if key not in ("collation", "autoincrement")}

    def terms(entry):
        return [{key: value for key, value in term.items() if key != "expression"} for term in entry["columns"]]

    def relation(entry):
        entry = dict(entry, columns=[column(each) for each in entry["columns"]])
        assert entry.pop("problem") is None, entry["name"]
        return entry

    def table(entry):
        entry = relation(entry)
        if entry["primary_key"] is not None:
            entry["primary_key"] = [term["column"] for term in entry["primary_key"]["columns"]]
        entry["unique_keys"] = [terms(key) for key in entry["unique_keys"]]
        entry["indexes"] = [dict({key: value for key, value in index.items() if key != "condition"},
                                 columns=terms(index)) for index in entry["indexes"]]
        return entry

    return {"counts": shown["counts"], "tables": [table(each) for each in shown["tables"]],
            "views": [relation(each) for each in shown["views"]]}
