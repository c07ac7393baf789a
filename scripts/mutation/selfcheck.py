"""Tries the mutants of a small source of which it is known what becomes of them: see fixture/."""

import subprocess
import tempfile
from pathlib import Path

from mutants import Finder, number_repeated
from running import Sandbox, TestProgram
from weaving import woven

HERE = Path(__file__).resolve().parent
KILLED, SURVIVED, UNREACHED = "killed", "survived", "not reached"
EXPECTED = {
    ("topRung", "10 becomes one more"): KILLED,
    ("rungAt", "the condition is negated"): KILLED,
    ("rungAt", "> becomes >="): SURVIVED, # both ways give 10 for 10
    ("mayClimb", "&& becomes ||"): KILLED,
    ("mayClimb", "what is returned is negated"): KILLED,
    ("climb", "the call is dropped"): KILLED,
    ("climb", "+ becomes -"): KILLED,
    ("climb", "1 becomes one more"): KILLED,
    ("climb", "the call is dropped (2)"): SURVIVED,
    ("stepsOf", "3 becomes one more"): UNREACHED,
    ("stepsOf", "* becomes /"): UNREACHED,
    ("stepsOf", "0 becomes one more"): UNREACHED,
    ("stepsOf", "1 becomes one more"): UNREACHED,
    ("stepsOf", "1 becomes one more (2)"): UNREACHED,
}


def self_check(root, work):
    source = HERE / "fixture/ladder.cpp"
    entry = {"file": str(source), "command": f"c++ -std=c++17 -I{HERE / 'fixture'} -c {source} -o ladder.o"}
    mutants = sorted(Finder(HERE, ["fixture"]).search(entry), key=lambda mutant: mutant.start)
    mutants = [mutant for mutant in mutants if mutant.file.endswith(".cpp")]
    for mutant in mutants:
        mutant.code = "" # so that what repeats is numbered by function
    number_repeated(mutants)
    for number, mutant in enumerate(mutants):
        mutant.number = number
    with tempfile.TemporaryDirectory(dir=work) as folder:
        Path(folder).chmod(0o755)
        (Path(folder) / "ladder.cpp").write_bytes(woven(source.read_bytes(), mutants))
        program = Path(folder) / "ladder_test"
        subprocess.run(["c++", "-std=c++17", "-include", HERE / "woven.h", f"-I{HERE}", f"-I{HERE / 'fixture'}",
                        f"{folder}/ladder.cpp", HERE / "fixture/ladder_test.cpp", HERE / "chosen.cpp", "-o", program,
                        "-lgtest_main", "-lgtest"], check=True)
        test = TestProgram("ladder_test", program, Sandbox(root, work))
        test.learn(len(mutants))
        found = {}
        for mutant in mutants:
            outcome = UNREACHED
            if test.reaches(mutant.number):
                outcome = KILLED if test.try_mutant(mutant.number, False) else SURVIVED
            found[mutant.function, mutant.change] = outcome
    for key in sorted(set(found) | set(EXPECTED)):
        if found.get(key) != EXPECTED.get(key):
            raise SystemExit(f"mutants: the fixture's {key} was expected to be {EXPECTED.get(key, 'no mutant')}, but is "
                             f"{found.get(key, 'no mutant')}")
    return len(found)
