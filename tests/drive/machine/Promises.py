# SPDX-License-Identifier: MIT
"""What the program promises where two write at once: the one switch between the two sets of rules.

True: a change writes the keys that were set, the store looks at the file whenever it is asked, a confirmed deletion
takes away the row it was asked for, the settings file survives a kill, and a notifications folder made anew is found.
False: the whole record is written, and the rest is left out. The model knows both, so that a build of either kind
can be tried.
"""
WRITES_WHAT_WAS_CHANGED = True
