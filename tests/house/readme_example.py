"""Runs the program of README.md and compares what it prints with what the page says that it prints.

    readme_example.py <program>
"""

import re
import subprocess
import sys

import tree

page = tree.read("README.md")
match = re.search(r"```cpp\n.*?```.*?```text\n(.*?)```", page, re.DOTALL)
problems = []
if not match:
    problems.append("README.md: no program followed by its output")
else:
    run = subprocess.run([sys.argv[1]], capture_output=True, text=True, check=False)
    if run.returncode != 0:
        problems.append(f"the program ends with status {run.returncode}: {run.stderr}")
    if run.stdout != match.group(1):
        problems.append(f"the program prints\n{run.stdout}and the page says\n{match.group(1)}")
tree.finish("README example", problems)
