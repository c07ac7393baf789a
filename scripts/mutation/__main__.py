"""The work of scripts/mutants, which says how it is called."""

import argparse
import hashlib
import pickle
import random
import sys
import time
from concurrent.futures import ProcessPoolExecutor, ThreadPoolExecutor
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))

from mutants import Finder, number_repeated # noqa: E402
from running import Sandbox, TestProgram # noqa: E402
from selfcheck import self_check # noqa: E402
from weaving import FOLDERS, Programs, compile_commands # noqa: E402

EXPLAINED = HERE / "unkilled.tsv"


def search(root, entry):
    return list(Finder(root, FOLDERS).search(entry))


def sources(root):
    """How each source of the library is compiled."""
    return [entry for output, entry in compile_commands(root / "build/dev").items()
            if output.startswith("CMakeFiles/panelkit_objects.dir/") and "autogen" not in entry["file"]]


def find(root, entries, jobs):
    """All mutants of the sources and of the library's headers that they include, in the order of the code."""
    found = {}
    with ProcessPoolExecutor(jobs) as pool:
        for mutants in pool.map(search, [root] * len(entries), entries):
            for mutant in mutants:
                found[mutant.file, mutant.start, mutant.end, mutant.change] = mutant
    mutants = sorted(found.values(), key=lambda mutant: (FOLDERS.index(mutant.folder), mutant.file, mutant.start,
                                                         mutant.depth, mutant.end))
    number_repeated(mutants)
    return mutants


def find_all(root, jobs):
    """All mutants of the library; from the last time if nothing has changed since."""
    digest = hashlib.sha256(repr(sources(root)).encode())
    files = [HERE / "mutants.py"]
    for folder in FOLDERS:
        files += sorted((root / folder).glob("*.h")) + sorted((root / folder).glob("*.cpp"))
    for file in files:
        digest.update(file.read_bytes())
    memory = root / "build/mutants/found"
    try:
        known, mutants = pickle.loads(memory.read_bytes())
    except (OSError, EOFError, pickle.UnpicklingError):
        known = None
    if known != digest.digest():
        mutants = find(root, sources(root), jobs)
        memory.write_bytes(pickle.dumps((digest.digest(), mutants)))
    return mutants


def find_sample(root, folders, count, lot, jobs):
    """Some mutants: sources are drawn by their length, half as many as mutants, and then mutants from those."""
    entries = sorted((entry for entry in sources(root) if Path(entry["file"]).parent.name in folders),
                     key=lambda entry: entry["file"])
    if not entries: # a folder of headers
        entries = sources(root)
    lengths = [Path(entry["file"]).stat().st_size for entry in entries]
    drawn = {entry["file"]: entry for entry in lot.choices(entries, lengths, k=(count + 1) // 2)}
    return find(root, list(drawn.values()), jobs)


def read_explained():
    explained = {}
    for number, line in enumerate(EXPLAINED.read_text().splitlines(), 1):
        if not line or line.startswith("#"):
            continue
        parts = line.split("\t")
        if len(parts) != 5 or not all(parts):
            raise SystemExit(f"mutants: {EXPLAINED.name}:{number}: expected file, function, code, change and reason, "
                             "with tabs between them")
        explained[tuple(parts[:4])] = parts[4]
    return explained


class Run:
    def __init__(self, options, root):
        self.options, self.root = options, root
        self.work = root / "build/mutants"
        self.work.mkdir(parents=True, exist_ok=True)
        self.begin = time.monotonic()

    def say(self, text):
        print(f"{text} ({time.monotonic() - self.begin:.0f} s)", flush=True)

    def mutants(self):
        options = self.options
        lot = random.Random(options.seed)
        if options.sample:
            mutants = find_sample(self.root, options.folders, options.sample, lot, options.jobs)
        else:
            mutants = find_all(self.root, options.jobs)
        mutants = [mutant for mutant in mutants if mutant.folder in options.folders]
        self.say(f"{len(mutants)} mutants found")
        explained = read_explained()
        for mutant in mutants:
            mutant.reason = explained.get(mutant.key, "")
        self.stale = []
        if options.sample:
            mutants = [mutant for mutant in mutants if not mutant.reason]
            chosen = lot.sample(range(len(mutants)), min(options.sample, len(mutants)))
            return [mutants[place] for place in sorted(chosen)]
        known = {mutant.key for mutant in mutants}
        self.stale = [key for key in explained if key[0].split("/")[0] in options.folders and key not in known]
        if options.only:
            mutants = [mutant for mutant in mutants if mutant.file in options.only or
                       f"{mutant.file}:{mutant.line}" in options.only]
        return mutants

    def programs(self, programs, mutants):
        """The mutants that can be tried and, for each folder, its test programs, quick ones first."""
        mutants = programs.weave(mutants)
        self.say(f"{len(mutants)} woven and compiled, {len(programs.left_out)} left out that have to be constant")
        sandbox = Sandbox(self.root, self.work)
        built, of_folder = {}, {}
        for folder in {mutant.folder for mutant in mutants}:
            of_folder[folder] = programs.of_folder(folder)
            for name in of_folder[folder]:
                built.setdefault(name, None)
        with ThreadPoolExecutor(self.options.jobs) as pool:
            for name, path in zip(built, pool.map(programs.link, built)):
                built[name] = TestProgram(name, path, sandbox)
        for program in built.values():
            program.learn(1 + max(mutant.number for mutant in mutants))
        self.say(f"{len(built)} test programs pass without a mutant")
        return mutants, {folder: sorted((built[name] for name in names), key=lambda program: program.cpu_seconds)
                         for folder, names in of_folder.items()}

    def try_mutant(self, mutant, programs):
        reached = [program for program in programs if program.reaches(mutant.number)]
        if not reached:
            return "survived: no test reaches it"
        # First those tests alone that reach it. What an earlier test has left behind may matter, so a survivor is
        # tried with every test.
        for every_test in (False, True):
            for program in reached:
                killer = program.try_mutant(mutant.number, every_test)
                if killer:
                    return f"killed by {killer}"
        return "survived"

    def run(self):
        count = self_check(self.root, self.work)
        self.say(f"{count} mutants of the script's own check became what they should")
        programs = Programs(self.root, self.work, self.options.jobs)
        programs.build_ordinary(self.options.folders)
        self.say("test programs built")
        mutants, programs = self.programs(programs, self.mutants())
        report = (self.work / "report.tsv").open("w")
        print("place", "function", "code", "change", "outcome", "reason", sep="\t", file=report, flush=True)

        def attempt(mutant):
            mutant.outcome = self.try_mutant(mutant, programs[mutant.folder])
            print(f"{mutant.file}:{mutant.line}", mutant.function, mutant.code, mutant.change, mutant.outcome,
                  mutant.reason, sep="\t", file=report, flush=True)

        with ThreadPoolExecutor(self.options.jobs) as pool:
            list(pool.map(attempt, mutants))
        self.say(f"{len(mutants)} tried; all of them are in build/mutants/report.tsv")
        return self.verdict(mutants)

    def verdict(self, mutants):
        print(f"\n{'folder':10} {'mutants':>7} {'killed':>7} {'explained':>9} {'survived':>8} {'score':>6}")
        for folder in FOLDERS:
            own = [mutant for mutant in mutants if mutant.folder == folder]
            if own:
                self.print_row(folder, own)
        self.print_row("all", mutants)
        faults = []
        for mutant in mutants:
            survived = mutant.outcome.startswith("survived")
            if survived and not mutant.reason:
                faults.append(f"{mutant.file}:{mutant.line}: {mutant.function}: `{mutant.code}`: {mutant.change}: "
                              f"{mutant.outcome}")
            elif mutant.reason and not survived and "AddressSanitizer" not in mutant.reason:
                faults.append(f"{mutant.file}:{mutant.line}: `{mutant.code}`: {mutant.change}: was {mutant.outcome}, "
                              f"but {EXPLAINED.name} says that no test can")
        for key in self.stale:
            faults.append(f"{EXPLAINED.name}: no such mutant: {' | '.join(key)}")
        if faults:
            print("\n" + "\n".join(faults), file=sys.stderr)
        return 1 if faults else 0

    @staticmethod
    def print_row(name, mutants):
        survivors = [mutant for mutant in mutants if mutant.outcome.startswith("survived")]
        explained = [mutant for mutant in survivors if mutant.reason]
        killed, rest = len(mutants) - len(survivors), len(survivors) - len(explained)
        score = f"{100 * killed / (killed + rest):.1f}%" if killed + rest else "-"
        print(f"{name:10} {len(mutants):7} {killed:7} {len(explained):9} {rest:8} {score:>6}")


def main():
    parser = argparse.ArgumentParser(prog="scripts/mutants")
    parser.add_argument("folders", nargs="*", metavar="FOLDER", help=f"of {' '.join(FOLDERS)}; all unless given")
    parser.add_argument("--sample", type=int, metavar="N", help="tries only so many, drawn by lot")
    parser.add_argument("--seed", type=int, default=1, help="of the lot; 1 unless given")
    parser.add_argument("--only", action="append", metavar="FILE[:LINE]", help="tries those of one file or line")
    parser.add_argument("--jobs", type=int, default=2, help="processes at once")
    options = parser.parse_args()
    for folder in options.folders:
        if folder not in FOLDERS:
            parser.error(f"'{folder}' is no folder of the library: give {', '.join(FOLDERS)}")
    options.folders = options.folders or list(FOLDERS)
    sys.exit(Run(options, HERE.parent.parent).run())


if __name__ == "__main__":
    main()
