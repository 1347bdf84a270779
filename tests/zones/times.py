"""Times of a few zones as another implementation knows them, for a comparison: random ones of the
years 1900 to 2500, and those around the changes of the clocks in a few years. A line each:
zone, what is known of it ("utc" or "local"), seconds since 1970, offset in seconds."""
import random
import sys
from datetime import datetime, timedelta, timezone
from zoneinfo import ZoneInfo

EPOCH = datetime(1970, 1, 1)
FIRST = int((datetime(1900, 1, 1) - EPOCH).total_seconds())
END = int((datetime(2501, 1, 1) - EPOCH).total_seconds())


def offset_of_utc(zone, seconds):
    moment = (EPOCH + timedelta(seconds=seconds)).replace(tzinfo=timezone.utc)
    return int(moment.astimezone(zone).utcoffset().total_seconds())


def offset_of_local(zone, seconds):
    local = (EPOCH + timedelta(seconds=seconds)).replace(tzinfo=zone, fold=0)
    return int(local.utcoffset().total_seconds())


def changes(zone, year):
    """The moments of the year at which the offset changes."""
    day = int((datetime(year, 1, 1) - EPOCH).total_seconds())
    end = int((datetime(year + 1, 1, 2) - EPOCH).total_seconds())
    while day < end:
        low, high = day, day + 86400
        if offset_of_utc(zone, low) != offset_of_utc(zone, high):
            while high - low > 1:
                middle = (low + high) // 2
                if offset_of_utc(zone, middle) == offset_of_utc(zone, low):
                    low = middle
                else:
                    high = middle
            yield high
        day += 86400


def main():
    count = int(sys.argv[1])
    generator = random.Random(2037)
    for name in sys.argv[2:]:
        zone = ZoneInfo(name)
        utc = [generator.randrange(FIRST, END) for _ in range(count)]
        local = [generator.randrange(FIRST, END) for _ in range(count)]
        for year in (1985, 2023, 2036, 2037, 2038, 2039, 2100, 2400, 2499):
            for change in changes(zone, year):
                utc += [change - 1, change, change + 1]
                for offset in {offset_of_utc(zone, change - 1), offset_of_utc(zone, change)}:
                    local += [change + offset + step for step in (-1, 0, 1, 600, -600)]
        for seconds in utc:
            print(name, "utc", seconds, offset_of_utc(zone, seconds))
        for seconds in local:
            print(name, "local", seconds, offset_of_local(zone, seconds))


main()
