# SPDX-License-Identifier: MIT
"""Checks that the log lines which docs/troubleshooting.md explains are those of the sources."""

import re

TEXT = r'"(?:[^"\\\n]|\\.)*"'
TEXTS = re.compile(rf'{TEXT}(?:\s*{TEXT})*')
ERROR = re.compile(rf'\b(?:LOG_ERROR|LOG_ERROR_FOR|MESH_ERROR)\((?:\w+,)?\s*({TEXT}(?:\s*{TEXT})*)')
EXPLAINED = re.compile(r'^\| `(.+?)` \|', re.MULTILINE)


def message(texts):
    """The message that adjacent literals make, without its line end."""
    joined = ''.join(re.findall(r'"((?:[^"\\\n]|\\.)*)"', texts))
    return joined.replace('\\n', '').replace('\\"', '"').strip()


def read_messages(folder):
    """All texts of the sources, and those that are logged at error level."""
    texts, errors = set(), set()
    for source in [*folder.rglob('*.cpp'), *folder.rglob('*.h')]:
        code = source.read_text()
        texts.update(message(match) for match in TEXTS.findall(code))
        errors.update(message(match) for match in ERROR.findall(code))
    return texts, errors


def complaints(root):
    page = 'docs/troubleshooting.md'
    explained = EXPLAINED.findall((root / page).read_text())
    texts, errors = read_messages(root / 'src')
    for line in explained:
        if line not in texts:
            yield f'{page} explains a line that nothing logs: {line}'
    for line in sorted(errors - set(explained)):
        yield f'{page} does not explain this line of error level: {line}'
