"""The text forms of the times of vxcore, as the library itself writes them."""

TICKS_PER_SECOND = 10_000_000
TICKS_PER_DAY = 86_400 * TICKS_PER_SECOND


def fraction(ticks):
    """The digits of a second after the point, and the point; nothing for none."""
    return (".%07d" % ticks).rstrip("0") if ticks else ""


def date_time(ticks):
    """Date and time. Python's own calendar ends at the year 9999, that of the library does not."""
    days, rest = divmod(ticks, TICKS_PER_DAY)
    # The algorithm of Howard Hinnant's "chrono-Compatible Low-Level Date Algorithms": years begin
    # in March, and an era has 400 of them.
    era, day_of_era = divmod(days + 719_468, 146_097)
    year_of_era = (
        day_of_era - day_of_era // 1460 + day_of_era // 36_524 - day_of_era // 146_096
    ) // 365
    day_of_year = day_of_era - (365 * year_of_era + year_of_era // 4 - year_of_era // 100)
    month = (5 * day_of_year + 2) // 153
    day = day_of_year - (153 * month + 2) // 5 + 1
    month += 3 if month < 10 else -9
    year = year_of_era + era * 400 + (1 if month <= 2 else 0)
    sign = "-" if year < 0 else "+" if year > 9999 else ""
    seconds, part = divmod(rest, TICKS_PER_SECOND)
    clock = "%02d:%02d:%02d" % (seconds // 3600, seconds // 60 % 60, seconds % 60)
    return "%s%04d-%02d-%02dT%s%s" % (sign, abs(year), month, day, clock, fraction(part))


def span(ticks):
    """A duration, such as P1DT2H3M4.5S."""
    if ticks == 0:
        return "PT0S"
    days, rest = divmod(abs(ticks), TICKS_PER_DAY)
    seconds, part = divmod(rest, TICKS_PER_SECOND)
    text = "-P" if ticks < 0 else "P"
    if days:
        text += "%dD" % days
    if rest:
        text += "T"
    if seconds // 3600:
        text += "%dH" % (seconds // 3600)
    if seconds // 60 % 60:
        text += "%dM" % (seconds // 60 % 60)
    if seconds % 60 or part:
        text += "%d%sS" % (seconds % 60, fraction(part))
    return text
