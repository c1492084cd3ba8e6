"""Validates documents against a JSON Schema, with a validator that knows nothing of this project.

usage: validate.py SCHEMA DOCUMENT...

Prints a line for each document: "valid", or the place of the first mistake.
"""
import json
import sys

import jsonschema


def load(path):
    with open(path, encoding="utf-8") as file:
        return json.load(file)


schema = load(sys.argv[1])
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)
for path in sys.argv[2:]:
    errors = sorted(validator.iter_errors(load(path)), key=lambda error: [str(step) for step in error.path])
    print("/".join(["invalid:", *(str(step) for step in errors[0].path)]) if errors else "valid")
