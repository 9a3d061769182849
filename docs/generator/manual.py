# SPDX-License-Identifier: MIT
"""Checks that the manual page of orloctl has all of its commands and options."""

import re


def complaints(root, usage_of):
    """`usage_of` returns what orloctl prints for some arguments."""
    page = 'docs/man/orloctl.1.in'
    manual = (root / page).read_text().replace('\\-', '-')
    usage = usage_of('--help')
    commands = re.findall(r'^  orloctl ([\w-]+)', usage, re.MULTILINE)
    usage += ''.join(usage_of(command, '--help') for command in commands)
    options = re.findall(r'^  (--[\w-]+)', usage, re.MULTILINE)
    for command in commands:
        if not re.search(rf'^\.[BIR]+ (?:"|){command}\b', manual, re.MULTILINE):
            yield f'{page} does not have the command {command}'
    for option in sorted(set(options)):
        if not re.search(rf'^\.[BIR]+ {option}\b', manual, re.MULTILINE):
            yield f'{page} does not have the option {option}'
