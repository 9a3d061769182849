# SPDX-License-Identifier: MIT
"""Files that pages show: a comment names one, the code block behind it holds its content."""

import re

SHOWN = re.compile(r'(<!-- file: (\S+) -->\n```\w+\n).*?(```\n)', re.DOTALL)


def with_files(text, root):
    return SHOWN.sub(lambda shown: shown[1] + (root / shown[2]).read_text() + shown[3], text)


def including_pages(root):
    """Pages that show files, as they should be."""
    for page in sorted((root / 'docs').glob('*.md')):
        text = page.read_text()
        if SHOWN.search(text):
            yield page.name, with_files(text, root)
