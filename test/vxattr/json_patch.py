#!/usr/bin/env python3
"""json_patch.py PROGRAM FOLDER: patches of random documents, applied as RFC 6902 says."""
import copy, json, os, random, subprocess, sys

program, folder = sys.argv[1:]
os.makedirs(folder, exist_ok=True)
rng = random.Random(6902)
NAMES = ["a", "a/b", "~", "~1", "0", "\n\u00e4"]


def scalar():
    return rng.choice([None, True, False, rng.randrange(9), -2**53, 0.5, 1e300, "", "x", "\u00fc\"\\"])


def document(depth):
    kind = rng.randrange(6) if depth else 0
    if kind == 0:
        return scalar()
    if kind == 1:
        return [rng.choice("abcd") for _ in range(rng.choice([0, 2, 3, 6]))]
    if kind == 2:
        return [rng.randrange(4) for _ in range(rng.randrange(2, 9))]
    if kind == 3:
        return [record(depth) for _ in range(rng.randrange(2, 6))]
    return record(depth)


def record(depth):
    return {name: document(depth - 1) for name in NAMES if rng.random() < 0.6}


def changed(value):
    """A copy with a few changes. No list has one element: that is the element itself."""
    if rng.random() < 0.1:
        return document(2)
    if isinstance(value, dict):
        return {name: changed(value[name]) for name in value if rng.random() < 0.9}
    if isinstance(value, list) and len(value) > 1:
        kept = [changed(x) if isinstance(x, dict) else x for x in value if rng.random() < 0.8]
        kept = [x for x in kept if type(x) is type(value[0])]
        at = rng.randrange(len(kept) + 1)
        return (kept[:at] + value[:2] + kept[at:])
    return value


def apply(document, operation):
    steps = [s.replace("~1", "/").replace("~0", "~") for s in operation["path"].split("/")[1:]]
    if not steps:
        return operation["value"]
    place = document
    for step in steps[:-1]:
        place = place[int(step) if isinstance(place, list) else step]
    last, kind = steps[-1], operation["op"]
    if isinstance(place, list):
        last = int(last)
        if not 0 <= last < len(place) + (kind == "add"):
            raise IndexError(last)
        if kind == "add":
            place.insert(last, operation["value"])
            return document
    elif (last in place) != (kind != "add"):
        raise KeyError(last)
    if kind == "remove":
        del place[last]
    else:
        place[last] = operation["value"]
    return document


def same(a, b):
    return json.dumps(a, sort_keys=True) == json.dumps(b, sort_keys=True)


def paths(values):
    for number, value in enumerate(values):
        path = os.path.join(folder, f"{number}.json")
        with open(path, "w") as file:
            json.dump(value, file)
        yield path


differing = 0
for _ in range(200):
    a = rng.choice([record(3), [record(2), record(2), record(1)]])
    b = changed(a) if rng.random() < 0.9 else record(3)
    if not isinstance(b, (dict, list)):
        continue
    run = subprocess.run([program, "diff", *paths([a, b]), "--to", "json-patch"], capture_output=True)
    patch, result = json.loads(run.stdout), copy.deepcopy(a)
    for operation in patch:
        result = apply(result, operation)
    if not same(result, b) or run.returncode != (not same(a, b)) or bool(patch) == same(a, b):
        sys.exit(f"{json.dumps(a)}\n{json.dumps(b)}\n{run}\nmakes {json.dumps(result)}")
    differing += bool(patch)
if differing < 100:
    sys.exit(f"only {differing} differ")
