# SPDX-License-Identifier: MIT
"""Writes the generated pages of docs/, or with --check says which are not current.

usage: python3 docs/generator [--check] ORLOCTL
"""

import json
import re
import subprocess
import sys
from pathlib import Path

import inclusions
import log_lines
import manual
import pages
from operations import read_operations
from records import comment_text, read_layout, read_records

ROOT = Path(__file__).resolve().parents[2]
RECORDS = ROOT / 'include/orlo/records'


def output_of(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def header_titles():
    """The comment at the top of each header: of records.h paragraphs and rules, of others a title."""
    titles = {}
    for header in RECORDS.glob('*.h'):
        comment = re.search(r'/\*.*?\*/', header.read_text(), re.DOTALL)[0]
        titles[header.name] = [comment_text(comment).rstrip('.')]
    comment = re.search(r'/\*.*?\*/', (ROOT / 'include/orlo/records.h').read_text(), re.DOTALL)[0]
    rules = comment_text(comment).split('Unless a member says otherwise:')[1]
    titles['records.h'] = ['Unless a member says otherwise:', '',
                           *('- ' + rule.strip() for rule in re.split(r' - ', rules)[1:])]
    return titles


def generated_pages(orloctl):
    head, groups = read_operations(ROOT / 'include/orlo/operations.def')
    records = read_records(RECORDS)
    described = {record['name']: {field['name']: field for field in record['fields']}
                 for record in json.loads(output_of(orloctl, 'records', '--json'))}
    layout = read_layout(ROOT / 'tests/abi/layout.def')
    return {
        'operations.md': pages.operations_page(head, groups, records),
        'records.md': pages.records_page(header_titles(), records, layout, described, groups),
        'descriptions.md': pages.descriptions_page(output_of(orloctl, 'schema', '--markdown')),
        **dict(inclusions.including_pages(ROOT)),
    }


def stale_pages(generated):
    for name, text in generated.items():
        page = ROOT / 'docs' / name
        if not page.exists() or page.read_text() != text:
            yield f'docs/{name} is not current: ./run docs writes it'


def main(arguments):
    check = arguments[:1] == ['--check']
    orloctl, = arguments[1 if check else 0:]
    generated = generated_pages(orloctl)
    if not check:
        for name, text in generated.items():
            (ROOT / 'docs' / name).write_text(text)
    complaints = [*stale_pages(generated), *log_lines.complaints(ROOT),
                  *manual.complaints(ROOT, lambda *words: output_of(orloctl, *words))]
    for complaint in complaints:
        print(complaint, file=sys.stderr)
    return 1 if complaints else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
