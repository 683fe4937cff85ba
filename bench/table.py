# SPDX-License-Identifier: MIT
"""The table of docs/performance.md, made from the lines of JSON that the benchmarks print."""
import json
import re

BEGIN = "<!-- measures: written by ./measure -->"
END = "<!-- end of measures -->"
HEAD = "| measure | at | beside | figure | spread | target | reached |\n|---|---|---|---|---|---|---|"


def quantile(figures, share):
    ordered = sorted(figures)
    return ordered[min(len(ordered) - 1, int(len(ordered) * share))]


def text(figure):
    """Three digits that count, and no exponent."""
    if abs(figure) >= 100:
        return f"{figure:,.0f}"
    return f"{figure:.1f}" if abs(figure) >= 10 else f"{figure:.2f}"


def line(measure):
    rounds = measure["rounds"]
    if not rounds:
        raise ValueError(f"{measure['measure']} at {measure['at']} has no rounds")
    figure = quantile(rounds, 0.5)
    target, reached = "", ""
    if "at least" in measure:
        target, reached = f"at least {measure['at least']:g}", figure >= measure["at least"]
    elif "at most" in measure:
        target, reached = f"at most {measure['at most']:g}", figure <= measure["at most"]
    answer = {"": "", True: "yes", False: "**no**"}[reached]
    spread = f"{text(quantile(rounds, 0.25))} to {text(quantile(rounds, 0.75))}"
    cells = [measure["measure"], measure["at"], measure["peer"], f"{text(figure)} {measure['unit']}", spread, target, answer]
    return "| " + " | ".join(cells) + " |"


def name(row):
    """What a row of the table measures: its first three cells, which a new figure replaces."""
    return tuple(cell.strip() for cell in row.split("|")[1:4])


def lines_of(document):
    """The measures' rows that stand in the document."""
    table = re.search(re.escape(BEGIN) + "\n(.*?)" + re.escape(END), document, re.DOTALL)
    if not table:
        raise ValueError(f"there are no lines \"{BEGIN}\" and \"{END}\"")
    rows = [row for row in table.group(1).splitlines() if row.startswith("|")]
    return rows[2:]


def rewritten(document, measures, when):
    """The document with the new figures between its marks; rows that were not measured stay, and so does all else."""
    new = [line(measure) for measure in measures]
    rows = {name(row): row for row in lines_of(document)}
    rows.update((name(row), row) for row in new)
    table = f"{BEGIN}\n{when}\n\n{HEAD}\n" + "\n".join(rows.values()) + f"\n\n{END}"
    return re.sub(re.escape(BEGIN) + ".*?" + re.escape(END), lambda _: table, document, flags=re.DOTALL)


def parsed(output):
    """The measures in what a benchmark has printed, one a line."""
    return [json.loads(each) for each in output.splitlines() if each.startswith("{")]
