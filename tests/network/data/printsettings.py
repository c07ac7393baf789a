"""Prints the settings file named by the argument as another program reads it: one line a key, sorted."""

import configparser
import sys

settings = configparser.ConfigParser(interpolation=None)
settings.optionxform = str
with open(sys.argv[1], encoding="utf-8") as file:
    settings.read_file(file)
for group in sorted(settings.sections()):
    for key in sorted(settings[group]):
        print(f"{group}/{key}={settings[group][key]}")
