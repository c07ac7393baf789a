# Reads lines of CSV, each on its own, and prints their fields as JSON.
import csv
import json
import sys

lines = sys.stdin.buffer.read().decode("utf-8").split("\n")
json.dump([next(csv.reader([line]), []) for line in lines], sys.stdout)
