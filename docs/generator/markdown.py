# SPDX-License-Identifier: MIT
"""Turns the plain text of comments into Markdown: code as code, names as links."""

import re

WORD = re.compile(r'''
    (?P<code>`[^`\s]+`) |
    "(?P<quoted>[^"\n]*)" |
    \b(?P<record>struct\ \w+) |
    (?P<slot>\b[Ss]lot\ \d+\b) |
    (?P<option>(?<![\w"])[a-z]+\.[@\w]+(?:\[\d\])?\.\w+) |
    (?P<path>(?<![\w/"-])/[a-z]\w*(?:/[\w.-]*\w)*) |
    (?P<name>(?<![\w"])\.?\w+_\w*(?:\(\))?) |
    (?P<special>[<*`|])
''', re.VERBOSE)


class Links:
    """What names lead to: addresses by operation, by slot, and by record."""

    def __init__(self, operations, slots, records):
        self.operations = operations
        self.slots = slots
        self.records = records


def heading_address(title):
    """The address that a heading gets."""
    return '#' + re.sub(r'[^\w -]', '', title.lower()).replace(' ', '-')


def rich(text, links):
    def replacement(word):
        kind = word.lastgroup
        shown = word[0]
        if kind == 'quoted':
            is_command = re.search(r'[/<|_]', word['quoted']) is not None
            return f'`{word["quoted"]}`' if is_command else shown
        if kind == 'record':
            address = links.records.get(shown.split()[1])
            return f'[`{shown}`]({address})' if address else f'`{shown}`'
        if kind == 'slot':
            address = links.slots.get(int(shown.split()[1]))
            return f'[{shown}]({address})' if address else shown
        if kind == 'name':
            address = links.operations.get(shown)
            return f'[`{shown}`]({address})' if address else f'`{shown}`'
        if kind == 'special':
            return '\\' + shown
        return shown if kind == 'code' else f'`{shown}`'

    return WORD.sub(replacement, text)


def paragraph_lines(paragraph, links):
    """A text, or a list of pairs of item and explanation, as lines of Markdown."""
    if isinstance(paragraph, str):
        return [rich(paragraph, links), '']
    return [f'- **{rich(item, links)}**: {rich(text, links)}' for item, text in paragraph] + ['']


def table(head, rows):
    lines = ['| ' + ' | '.join(head) + ' |', '|' + '---|' * len(head)]
    for row in rows:
        lines.append('| ' + ' | '.join(row) + ' |')
    return lines + ['']


def cell(text):
    """Plain text for a table's cell."""
    return re.sub(r'(?<!\\)([<*|])', r'\\\1', text)
