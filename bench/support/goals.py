"""The closing lines of a benchmark: one a goal, and a status that tells whether all of them are met."""


class Goals:
    def __init__(self):
        self.missed = 0

    def at_most(self, name, figure, limit, unit):
        self.tell(name, figure, limit, unit, figure <= limit)

    def at_least(self, name, figure, limit, unit):
        self.tell(name, figure, limit, unit, figure >= limit)

    def tell(self, name, figure, limit, unit, met):
        self.missed += not met
        print(f"goal {name}: {figure:.2f} {unit} of {limit:.2f} {unit}, {'met' if met else 'missed'}", flush=True)

    def status(self):
        return 1 if self.missed else 0


def median(values):
    return percentile(values, 50)


def percentile(values, percent):
    """Between the two values next to it, in proportion."""
    ordered = sorted(values)
    place = (len(ordered) - 1) * percent / 100
    low = int(place)
    high = min(low + 1, len(ordered) - 1)
    return ordered[low] + (ordered[high] - ordered[low]) * (place - low)


def table(head, rows):
    """Columns as wide as they need to be; the first to the left, the others to the right."""
    lines = [[str(cell) for cell in row] for row in [head, *rows]]
    widths = [max(len(line[column]) for line in lines) for column in range(len(head))]
    for line in lines:
        cells = [line[0].ljust(widths[0]), *(cell.rjust(width) for cell, width in zip(line[1:], widths[1:]))]
        print("  ".join(cells), flush=True)
