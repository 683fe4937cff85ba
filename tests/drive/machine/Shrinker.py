# SPDX-License-Identifier: MIT
"""Finds a short part of a list of entries that fails as the whole does."""
import time


def shrink(entries, fails, seconds):
    """The shortest list that was found with `fails(list)` true, in about so many seconds; the order is kept.

    Takes away ever smaller pieces, the last ones first, as long as what is left still fails."""
    deadline = time.monotonic() + seconds
    piece = max(len(entries) // 2, 1)
    while True:
        end = len(entries)
        is_shorter = False
        while end > 0:
            if time.monotonic() > deadline:
                return entries
            start = max(end - piece, 0)
            shorter = entries[:start] + entries[end:]
            if shorter and fails(shorter):
                entries = shorter
                is_shorter = True
            end = start
        if piece == 1 and not is_shorter:
            return entries
        if not is_shorter:
            piece = max(piece // 2, 1)
