# Loads the printers of the styles libraries with the library that this file is named after. They lie beside gdb's own
# folder in share/, wherever that is.

import pathlib
import sys

import gdb

for folder in pathlib.Path(__file__).resolve().parents:
    if (folder / "styles/gdb/styles_printers.py").is_file():
        sys.path.insert(0, str(folder / "styles/gdb"))
        import styles_printers

        sys.path.pop(0)
        styles_printers.register(gdb.current_objfile())
        break
