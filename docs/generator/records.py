# SPDX-License-Identifier: MIT
"""The records of the public headers, with what is written beside their members."""

import re

TOKEN = re.compile(r'(?P<comment>/\*.*?\*/)|(?P<directive>^#.*?$)|(?P<open>(?:struct|union)[^;{}()]*\{)|'
                   r'(?P<close>\}[^;]*;)|(?P<declaration>\w[^;{}]*;)', re.DOTALL | re.MULTILINE)
DECLARATION = re.compile(r'(.*?)(\w+)((?:\[\w+\])*);$')


class Member:
    def __init__(self, kind, name):
        self.kind = kind
        self.name = name
        self.meaning = ''


class Record:
    def __init__(self, name, meaning, header):
        self.name = name
        self.meaning = meaning
        self.header = header
        self.members = []


def comment_text(comment):
    lines = comment[2:-2].strip().split('\n')
    return ' '.join(re.sub(r'^\s*\*\s?', '', line).strip() for line in lines)


def member_of(declaration, prefix):
    kind, name, extent = DECLARATION.match(' '.join(declaration.split())).groups()
    return Member(kind.strip() + extent, prefix + name)


class Reader:
    """Goes through a header. Members of an inner struct are named with it: it is named at its end."""

    def __init__(self, header):
        self.header = header
        self.records = []
        self.inner = []      # where the members of open inner structs and unions begin
        self.last = None     # what a comment on the same line is about
        self.above = ''

    def record(self):
        return self.records[-1]

    def take_open(self, text):
        if text.startswith('union') or text == 'struct {':
            self.inner.append(len(self.record().members))
            self.last = None
        else:
            self.records.append(Record(text.split()[1], self.above, self.header))

    def take_close(self, text):
        if not self.inner:
            return
        first = self.inner.pop()
        name = text[1:-1].strip()
        for member in self.record().members[first:]:
            member.name = f'{name}.{member.name}' if name else member.name

    def take_comment(self, text, same_line):
        if same_line and self.last is not None:
            self.last.meaning = comment_text(text)
        elif not self.inner:
            self.above = comment_text(text)

    def read(self, text):
        text = re.sub(r'^//.*$', '', text, flags=re.MULTILINE)
        for token in TOKEN.finditer(text):
            line_before = text[text.rfind('\n', 0, token.start()) + 1:token.start()]
            if token['open']:
                self.take_open(token['open'])
            elif token['close']:
                self.take_close(token['close'])
            elif token['declaration'] and self.records and not token['declaration'].startswith('enum'):
                self.last = member_of(token['declaration'], '')
                self.record().members.append(self.last)
            elif token['comment']:
                self.take_comment(token['comment'], line_before.strip() != '')
        return self.records


def read_records(folder):
    records = []
    for header in sorted(folder.glob('*.h')):
        if header.name != 'constants.h':
            records += Reader(header.name).read(header.read_text())
    return records


def read_layout(path):
    """Sizes by record, (64 bit, 32 bit with integers aligned to 8, to 4), and offsets by member."""
    text = path.read_text()
    sizes = {name: tuple(int(number) for number in numbers) for name, *numbers in
             re.findall(r'^ORLO_RECORD\((\w+), (\d+), \d+, (\d+), (\d+)\)', text, re.MULTILINE)}
    offsets = {(record, member): int(offset) for record, member, offset in
               re.findall(r'^ORLO_FIELD\((\w+), ([\w.]+), (\d+), \d+\)', text, re.MULTILINE)}
    return sizes, offsets
