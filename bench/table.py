"""What measurements have in common: turns, medians with their spread, and the table of ratios."""
import statistics

ROWS = []


def median(values):
    return statistics.median(values)


def spread(values, form="{:.2f}"):
    """The median and, in brackets, the least and the greatest value."""
    return f"{form.format(median(values))} ({form.format(min(values))} to {form.format(max(values))})"


def in_turns(turns, *works):
    """The values of each work, taken A B B A, so that a busy moment meets all of them and none is always the first."""
    values = [[] for _ in works]
    for turn in range(turns):
        for kept, work in list(zip(values, works))[::-1 if turn % 2 else 1]:
            kept.append(work())
    return values


def add(work, ours, beside, theirs, bar, unit="s"):
    """A row of the table: two lists of the same length, and what their ratio may be at most."""
    ratios = [a / b for a, b in zip(ours, theirs)]
    ROWS.append((work, f"{median(ours):.4g} {unit}", beside, f"{median(theirs):.4g} {unit}", spread(ratios),
                 bar, "" if bar is None else "met" if median(ratios) <= bar else "missed"))


def add_value(work, values, unit):
    ROWS.append((work, f"{spread(values, '{:.4g}')} {unit}", "", "", "", None, ""))


def show():
    head = ("work", "takes", "beside", "takes", "ratio (spread)", "at most", "")
    rows = [head, *((*row[:5], "" if row[5] is None else f"{row[5]:g}", row[6]) for row in ROWS)]
    widths = [max(len(row[i]) for row in rows) for i in range(len(head))]
    for row in rows:
        print("  ".join(text.ljust(width) for text, width in zip(row, widths)).rstrip(), flush=True)
