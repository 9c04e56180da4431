#!/usr/bin/env python3
"""store.py TOOL FOLDER RULES REPETITIONS: makes stores of rules below FOLDER, which has shop.db, and
prints how fast `orkrule store` works on them beside `orkrule batch`, and the most memory it took. The
rules are the examples over the sample database, with numbers of their own."""

import csv
import json
import os
import pwd
import re
import shutil
import socket
import sqlite3
import subprocess
import sys
import tempfile
import time

PROGRAMS = "/usr/lib/postgresql/15/bin"
TYPES = {"number": 1, "text": 2, "date": 3, "logic": 4}
SELECT = "select id, type, expression from rules"
UPDATE = "update rules set expression = :expression where id = :id"
RENAMES = ["--tables", "Orders:Sales", "--fields", "Orders.Qty:Pieces"]


def example_rules():
    """Type and text of the examples that need no report template."""
    with open("examples/rules.txt", encoding="utf-8") as file:
        rows = [line.split(None, 1) for line in file if line.strip() and line[0] != "#"]
    return [(kind, rule.rstrip("\n")) for kind, rule in rows if "Input." not in rule]


def rules(count):
    """The number of a rule stands in it, so that no two are the same."""
    examples = example_rules()
    for number in range(1, count + 1):
        kind, rule = examples[number % len(examples)]
        own = {"logic": f" or T.a = {number}", "number": f" + {number}", "text": f" & '{number}'"}
        yield number, kind, rule + own.get(kind, "")


def run(command, source=os.devnull):
    """Seconds and peak memory (MiB) of a command; a rule that is refused is no failure."""
    with open(source, "rb") as lines, tempfile.TemporaryFile() as told:
        begin = time.monotonic()
        process = subprocess.Popen(command, stdin=lines, stdout=subprocess.DEVNULL, stderr=told)
        _, status, usage = os.wait4(process.pid, 0)
        seconds = time.monotonic() - begin
        process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode not in (0, 1):
            told.seek(0)
            text = told.read().decode(errors="replace")
            sys.exit(f"status {process.returncode}: {' '.join(command)}\n{text}")
    return seconds, usage.ru_maxrss / 1024


class Sqlite:
    name = "SQLite"

    def __init__(self, folder):
        self.folder = folder

    def make(self, count):
        path = f"{self.folder}/rules-{count}.db"
        with sqlite3.connect(path) as store:
            store.execute("create table rules (id integer primary key, type text, expression text)")
            store.executemany("insert into rules values (?, ?, ?)", rules(count))
        store.close()
        return ["--store", path]

    def copy(self, store):
        path = store[1] + ".copy"
        shutil.copyfile(store[1], path)
        return ["--store", path]

    def end(self):
        pass


class Postgres:
    name = "PostgreSQL"

    def __init__(self, folder):
        self.folder = folder + "/postgres"
        self.user = None
        if os.geteuid() == 0:  # the server refuses root
            self.user = pwd.getpwnam("postgres")
            os.chmod(folder, 0o711)
        os.mkdir(self.folder)
        if self.user:
            os.chown(self.folder, self.user.pw_uid, self.user.pw_gid)
        self.call("initdb", "-D", self.folder + "/data", "-U", "ork", "-E", "UTF8",
                  "--locale=C.UTF-8", "--no-sync", "--auth=trust", stdout=subprocess.DEVNULL)
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            self.port = str(free.getsockname()[1])
        with open(folder + "/postgres.log", "wb") as log:
            self.server = subprocess.Popen(
                [PROGRAMS + "/postgres", "-D", self.folder + "/data", "-p", self.port, "-c",
                 "listen_addresses=127.0.0.1", "-c", "unix_socket_directories=", "-c", "fsync=off"],
                stdout=log, stderr=log, **self.identity())
        for _ in range(300):
            if subprocess.run([PROGRAMS + "/pg_isready", "-q", "-h", "127.0.0.1", "-p", self.port],
                              check=False).returncode == 0:
                return
            time.sleep(0.1)
        sys.exit("the server did not start")

    @staticmethod
    def is_installed():
        drivers = subprocess.run(["odbcinst", "-q", "-d"], capture_output=True, text=True,
                                 check=False).stdout if shutil.which("odbcinst") else ""
        return os.access(PROGRAMS + "/postgres", os.X_OK) and "[PostgreSQL Unicode]" in drivers

    def identity(self):
        if not self.user:
            return {}
        return {"user": self.user.pw_uid, "group": self.user.pw_gid, "extra_groups": [], "cwd": "/"}

    def call(self, program, *arguments, **options):
        subprocess.run([f"{PROGRAMS}/{program}", *arguments], check=True, **options,
                       **self.identity())

    def sql(self, database, text, lines=None):
        self.call("psql", "-X", "-q", "-v", "ON_ERROR_STOP=1", "-h", "127.0.0.1", "-p", self.port,
                  "-U", "ork", "-d", database, "-c", text, stdin=lines)

    def make(self, count):
        database = f"rules{count}"
        self.sql("postgres", f"create database {database}")
        self.sql(database, "create table rules (id integer, type text, expression text)")
        path = f"{os.path.dirname(self.folder)}/rules-{count}.csv"
        with open(path, "w", encoding="utf-8", newline="") as file:
            csv.writer(file).writerows(rules(count))
        with open(path, "rb") as lines:
            self.sql(database, "copy rules from stdin (format csv)", lines)
        os.remove(path)
        self.sql(database, "alter table rules add primary key (id)")
        self.sql(database, "analyze rules")
        return self.place(database)

    def place(self, database):
        return ["--store", "odbc:Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=" + self.port +
                f";Database={database};UseDeclareFetch=1;Fetch=1000", "--store-user", "ork"]

    def copy(self, store):
        database = re.search("Database=(\\w+)", store[1]).group(1)
        self.sql("postgres", f"create database {database}_copy template {database}")
        return self.place(database + "_copy")

    def end(self):
        self.server.terminate()
        self.server.wait()


def write_batch(path, server, operation, count):
    with open(path, "w", encoding="utf-8") as file:
        file.write(json.dumps({"op": "Connect", "server": "sqlite:" + server}) + "\n")
        for number, kind, rule in rules(count):
            call = {"op": operation, "id": number, "type": TYPES[kind], "expression": rule}
            file.write(json.dumps(call, ensure_ascii=False) + "\n")


def line(*cells):
    print(f"{cells[0]:<12} {cells[1]:<24} " + " ".join(f"{cell:>14}" for cell in cells[2:]),
          flush=True)


def main():
    tool, folder, count, repetitions = sys.argv[1], sys.argv[2], int(sys.argv[3]), int(sys.argv[4])
    shop = folder + "/shop.db"
    small = max(count // 10, 1)
    batches = {}
    for operation in ("Verify", "Translate"):
        batches[operation] = f"{folder}/{operation}.jsonl"
        write_batch(batches[operation], shop, operation, count)

    def command(kind, *options):
        return lambda place: [tool, "store", kind, *place, "--select", SELECT, "--db", shop, *options]

    # What is run on a store, and the batch of the same work on the same rules.
    works = {
        "check": (command("check"), "Verify"),
        "sql": (command("sql"), "Translate"),
        "rename": (command("rename", *RENAMES), "Verify"),
    }
    apply = command("rename", *RENAMES, "--apply", "--update", UPDATE)

    stores = [Sqlite(folder)] + ([Postgres(folder)] if Postgres.is_installed() else [])
    try:
        places = [(store, store.make(count), store.make(small)) for store in stores]
        best, memory = {}, {}

        def measure(key, arguments, source=os.devnull):
            seconds, peak = run(arguments, source)
            best[key] = min(seconds, best.get(key, seconds))
            memory[key] = max(peak, memory.get(key, peak))

        for _ in range(repetitions):  # one after the other, so that a slow spell meets all
            for operation, path in batches.items():
                measure(operation, [tool, "batch"], path)
            for store, place, _ in places:
                for name, (make, _) in works.items():
                    measure((store.name, name), make(place))

        print(f"{count:,} rules; the least time of {repetitions}, the most memory")
        line("store", "command", "rules a second", "of batch", "memory MiB", "of a tenth")
        for operation in batches:
            line("", f"batch {operation}", f"{count / best[operation]:,.0f}", "1.00",
                 f"{memory[operation]:.0f}", "")
        for store, place, tenth in places:
            for name, (make, operation) in works.items():
                key = (store.name, name)
                less = run(make(tenth))[1]
                line(store.name, name, f"{count / best[key]:,.0f}",
                     f"{best[operation] / best[key]:.2f}", f"{memory[key]:.0f}", f"{less:.0f}")
            less = run(apply(store.copy(tenth)))[1]
            seconds, peak = run(apply(store.copy(place)))
            line(store.name, "rename --apply", f"{count / seconds:,.0f}",
                 f"{best['Verify'] / seconds:.2f}", f"{peak:.0f}", f"{less:.0f}")
    finally:
        for store in stores:
            store.end()


if __name__ == "__main__":
    main()
