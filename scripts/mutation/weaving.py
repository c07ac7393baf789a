"""Writes sources in which all mutants stand at once, and builds test programs from them."""

import json
import os
import re
import shlex
import shutil
import subprocess
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

HERE = Path(__file__).resolve().parent
FOLDERS = ("platform", "runtime", "register", "link", "macro", "network", "export", "widgets")


def compile_commands(build):
    """How each object is compiled, by its path in the build."""
    commands = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        words = shlex.split(entry["command"])
        commands[words[words.index("-o") + 1]] = entry
    return commands


def woven(data, mutants):
    """The source with each mutant behind a question whether it is chosen. Lines stay where they are."""
    edits = [] # offset, rank at that offset, text; and how much of the source goes there
    constants = {mutant.constant for mutant in mutants if mutant.constant is not None}
    for offset in constants:
        in_class = data[:offset].rstrip().endswith(b"static")
        edits.append((offset, (1, 0, 0), b"inline const" if in_class else b"const", len(b"constexpr")))
    for mutant in mutants:
        def text(of):
            return of.replace("@", str(mutant.number)).encode()
        # What ends here comes before what begins here; the inner ends first and begins last.
        edits.append((mutant.start, (2, -mutant.end, mutant.depth), text(mutant.before), 0))
        edits.append((mutant.end, (0, -mutant.start, -mutant.depth), text(mutant.after), 0))
        if mutant.middle:
            start, end, middle = mutant.middle
            edits.append((start, (1, 0, 0), text(middle), end - start))
    result, position = [], 0
    for offset, _, text, length in sorted(edits, key=lambda edit: edit[:2]):
        result += [data[position:offset], text]
        position = offset + length
    return b"".join(result + [data[position:]])


class Programs:
    """The test programs of the build in build/dev, linked anew from objects with woven mutants."""

    def __init__(self, root, work, jobs):
        self.root, self.work, self.jobs = root, work, jobs
        self.build = root / "build/dev"
        self.tree, self.objects, self.programs = work / "tree", work / "objects", work / "programs"
        for folder in (self.tree, self.programs):
            shutil.rmtree(folder, ignore_errors=True)
        for folder in (self.tree, self.objects, self.programs):
            folder.mkdir(parents=True, exist_ok=True)
        self.commands = compile_commands(self.build)
        self.left_out = []

    def build_ordinary(self, folders):
        """Builds the test programs as they are; what the woven ones do not share with them is in there."""
        names = sorted({name for folder in folders for name in self.of_folder(folder)})
        result = subprocess.run(["cmake", "--build", self.build, "--target", *names], text=True, capture_output=True)
        if result.returncode:
            raise SystemExit(f"mutants: the tests do not build:\n{result.stdout[-4000:]}")
        self.users = self.find_users()

    def find_users(self):
        """The objects that each file of the project is compiled into, by its path in the project."""
        listing = subprocess.run(["ninja", "-C", self.build, "-t", "deps"], check=True, text=True, capture_output=True)
        users, target = {}, None
        for line in listing.stdout.splitlines():
            if line and not line.startswith(" "):
                target = line.split(": #deps")[0]
            elif line.startswith("    "):
                path = line.strip()
                if not path.startswith("/"):
                    path = os.path.normpath(self.build / path)
                users.setdefault(path, set()).add(target)
        return users

    def of_folder(self, folder):
        """The names of the folder's test programs."""
        tested = "|".join(self.tested_folders(folder))
        return sorted({match.group(1) for output in self.commands
                       for match in [re.match(rf"tests/(?:{tested})/CMakeFiles/([^/]+_tests)\.dir/", output)] if match})

    @staticmethod
    def tested_folders(folder):
        """The platform's code is in headers, which every folder's tests use."""
        return FOLDERS[1:] if folder == "platform" else (folder,)

    def weave(self, mutants):
        """Writes the woven files, and compiles what uses them of the folders' test programs; mutants that do not
        compile are left out, since what they change has to be constant."""
        tested = "|".join({folder for mutant in mutants for folder in self.tested_folders(mutant.folder)})
        wanted = re.compile(rf"CMakeFiles/panelkit_objects\.dir/|tests/({tested})/CMakeFiles/")
        for number, mutant in enumerate(mutants):
            mutant.number = number
        by_file = {}
        for mutant in mutants:
            by_file.setdefault(mutant.file, []).append(mutant)
        for name in by_file:
            self.write(name, by_file[name])
        pending = sorted({target for name in by_file for target in self.users.get(str(self.root / name), ())
                          if target in self.commands and wanted.match(target)})
        self.replaced = {target: self.objects / (target.replace("/", "+")) for target in pending}
        for _ in range(20):
            with ThreadPoolExecutor(self.jobs) as pool:
                messages = dict(zip(pending, pool.map(self.compile, pending)))
            failed = {target: message for target, message in messages.items() if message}
            if not failed:
                self.compile_support()
                return [mutant for mutant in mutants if mutant not in self.left_out]
            changed = set()
            for target, message in failed.items():
                changed |= self.leave_out(by_file, message, target)
            for name in changed:
                self.write(name, by_file[name])
            pending = sorted(set(failed) | {target for name in changed
                                            for target in self.users.get(str(self.root / name), ())
                                            if target in self.replaced})
        raise SystemExit("mutants: the woven sources do not compile, whatever is left out")

    def write(self, name, mutants):
        path = self.tree / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(woven((self.root / name).read_bytes(), mutants))

    def leave_out(self, by_file, message, target):
        """Takes the mutants out that the compiler complains about, and gives the names of their files."""
        places = re.findall(rf"^{re.escape(str(self.tree))}/([^:]+):(\d+):[\d:]* (error|note|  required from here)",
                            message, re.M)
        places += [(name, line, "error") for name, line in re.findall(
            rf"^{re.escape(str(self.tree))}/([^:]+):(\d+):\d+:   required from", message, re.M)]
        known = [mutant for mutants in by_file.values() for mutant in mutants] + self.left_out
        for kind in ("error", "note"):
            lines = {(name, int(line)) for name, line, what in places if what == kind}
            bad = [mutant for mutant in known
                   if {(mutant.file, mutant.line), (mutant.file, mutant.last_line)} & lines]
            if not bad and kind == "error": # where a name has to be constant, its value has
                names = {name for file, line in lines for name in self.names_in(file, line)}
                bad = [mutant for mutant in known if self.variable_of(mutant) in names]
            if bad: # those left out already were so because of an object before
                new = [mutant for mutant in bad if mutant in by_file[mutant.file]]
                for mutant in new:
                    by_file[mutant.file].remove(mutant)
                    self.left_out.append(mutant)
                return {mutant.file for mutant in new}
        raise SystemExit(f"mutants: {target} does not compile, and no mutant is at fault:\n{message[:4000]}")

    def names_in(self, file, line):
        return re.findall(r"[A-Za-z_]\w*", (self.tree / file).read_text().splitlines()[line - 1])

    def variable_of(self, mutant):
        """The constant whose value the mutant changes, if it is in one."""
        data = (self.root / mutant.file).read_bytes()[:mutant.start].decode()
        begin = data.rfind("\n") + 1 if mutant.constant is None else len(data.encode()[:mutant.constant].decode())
        match = re.match(r"\s*(?:static |inline )*const(?:expr)?\b[^=;{]*?(\w+)\s*(?:\[[^\]]*\]\s*)*[={]", data[begin:])
        return match.group(1) if match else None

    def compile(self, target):
        """Compiles one object and gives what the compiler said if it failed."""
        entry = self.commands[target]
        words = [word for word in shlex.split(entry["command"]) if not re.match(r"-W|-g", word)]
        words[words.index("-o") + 1] = str(self.replaced[target])
        source = words.index("-c") + 1
        path = Path(entry["file"])
        if path.is_relative_to(self.root) and (self.tree / path.relative_to(self.root)).exists():
            words[source] = str(self.tree / path.relative_to(self.root))
        first = next(place for place, word in enumerate(words) if word.startswith("-I"))
        words[first:first] = ["-include", str(HERE / "woven.h"), "-Werror=vla", f"-I{self.tree}"]
        result = subprocess.run(words, cwd=entry["directory"], text=True, capture_output=True,
                                env={**os.environ, "LC_ALL": "C"})
        return result.stderr if result.returncode else ""

    def compile_support(self):
        self.support = self.objects / "chosen.o"
        subprocess.run(["c++", "-std=c++17", "-O1", "-c", str(HERE / "chosen.cpp"), "-o", str(self.support)], check=True)

    def link(self, name):
        """Links one test program and gives its path."""
        listing = subprocess.run(["ninja", "-C", self.build, "-t", "commands", f"tests/{name}"], check=True, text=True,
                                 capture_output=True)
        command = next(line for line in reversed(listing.stdout.splitlines()) if f" -o tests/{name} " in line)
        command = command.split(f" -o tests/{name} ")[0].removeprefix(": && ") + f" -o {shlex.quote(str(self.programs / name))} " \
            + command.split(f" -o tests/{name} ")[1].split(" && ")[0]
        words = shlex.split(command)
        words = [str(self.replaced[word]) if word in self.replaced else word for word in words]
        # The woven objects come first: of what a header defines in several objects, the first counts.
        place = next(place for place, word in enumerate(words) if word.endswith(".o"))
        own = [word for word in words if word.startswith(str(self.objects))]
        words = [word for word in words if word not in own]
        words[place:place] = own + [str(self.support)]
        result = subprocess.run(words, cwd=self.build, text=True, capture_output=True)
        if result.returncode:
            raise SystemExit(f"mutants: {name} cannot be linked:\n{result.stderr[:4000]}")
        return self.programs / name
