# SPDX-License-Identifier: MIT
"""The list of operations, with the contracts that are written above its entries."""

import re

LINE_WIDTH = 100  # to which the comments of the list are filled

ENTRY = re.compile(r'ORLO_OP\((\d+), (.+?), (\w+),\s*\((.*?)\),\s*(\w+),\s*"(.*?)"\)', re.DOTALL)
PART = re.compile(r'/\*(?P<comment>.*?)\*/|(?P<entry>ORLO_OP\(\d.*?"\))', re.DOTALL)
GROUP = re.compile(r'^ ---- (.*) ---- $')
RESULT = re.compile(r'(-?\d[\d, ]*[.:,;]? |-1 |Always|NULL|Never NULL|No result|The result is|"" for)')
SENTENCE_END = re.compile(r'(?<=[.:]) (?=[A-Z"`-]|\d)')


class Operation:
    def __init__(self, text, contract):
        slot, result, name, parameters, meaning, summary = ENTRY.match(text).groups()
        self.slot = int(slot)
        self.result = result
        self.name = name
        self.parameters = ' '.join(parameters.split())
        self.meaning = meaning
        self.summary = summary
        self.effects, self.results = split_contract(contract)

    def prototype(self):
        space = '' if self.result.endswith('*') else ' '
        return f'{self.result}{space}{self.name}({self.parameters});'

    def arguments(self):
        """Pairs of type and name."""
        if self.parameters == 'void':
            return []
        pairs = [re.match(r'(.*?)(\w+)$', one.strip()).groups()
                 for one in self.parameters.split(',')]
        return [(kind.strip(), name) for kind, name in pairs]


class Group:
    def __init__(self, name):
        self.name = name
        self.operations = []


def split_contract(contract):
    """What an operation does, and what it returns: the paragraphs, or the last sentences, that begin
    with a result."""
    for index, paragraph in enumerate(contract):
        if isinstance(paragraph, str) and RESULT.match(paragraph):
            return contract[:index], contract[index:]
    if len(contract) != 1:
        return contract, []
    sentences = SENTENCE_END.split(contract[0])
    for index, sentence in enumerate(sentences):
        if index > 0 and sentences[index - 1].endswith('.') and RESULT.match(sentence):
            return [' '.join(sentences[:index])], [' '.join(sentences[index:])]
    return contract, []


def comment_lines(comment):
    """Its lines without the frame, each paragraph followed by an empty one. A paragraph ends where
    the next word would have had room."""
    lines = [re.sub(r'^ ?\* ?', '', line).rstrip() for line in comment.strip().split('\n')]
    result = []
    for line, following in zip(lines, lines[1:] + ['']):
        result.append(line)
        words = following.split()
        if words and line.endswith('.') and len(line) + 4 + len(words[0]) <= LINE_WIDTH:
            result.append('')
    return result


def paragraphs(comment):
    """Its paragraphs: a text each, or for a list of items a list of pairs."""
    result = []
    in_text = False
    column = 0
    for line in comment_lines(comment):
        text = line.strip()
        indent = len(line) - len(line.lstrip())
        if text == '':
            in_text = False
        elif indent == 2:
            if not (result and isinstance(result[-1], list)):
                result.append([])
                column = 0
            key = re.match(r'  \S+(?: \S+)*?\s{2,}', line)
            column = key.end() if key else column
            result[-1].append([line[:column].strip(), line[column:].strip()])
            in_text = False
        elif indent > 2:
            result[-1][-1][1] += ' ' + text
        elif in_text:
            result[-1] += ' ' + text
        else:
            result.append(text)
            in_text = True
    return result


def read_operations(path):
    """What stands above the first group, and the groups in their order."""
    head = None
    groups = []
    contract = []
    for part in PART.finditer(path.read_text()):
        if part['entry']:
            groups[-1].operations.append(Operation(part['entry'], contract))
        elif (heading := GROUP.match(part['comment'])):
            groups.append(Group(heading[1]))
        elif groups:
            contract = paragraphs(part['comment'])
        elif head is None:
            head = paragraphs(part['comment'])
    return head, groups
