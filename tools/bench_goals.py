"""The rows of the tables that bench_table.py prints, and their goals: the largest good ratios of our
time to a peer's. None means that a row is for information only."""

DOCUMENTS = ["settings", "records", "mixed", "inventory"]
SEAL_SIZES = [("16_B", 16), ("64_B", 64), ("1_KiB", 1024), ("64_KiB", 64 * 1024), ("16_MiB", 16 * 1024 * 1024)]
JSON_NUMBERS = ["integers", "doubles", "numbers"]
JSON_TREES = ["records", "twitter", "citm_catalog", "gsoc_2018", "mdn_data", "github_events", "strings"]
JSON_DOCUMENTS = ["configuration", "preferences", "mime_db", "iso_codes", *JSON_TREES, *JSON_NUMBERS]
JSON_READ_DOCUMENTS = [*JSON_DOCUMENTS, "preferences_known", "mime_db_known", "bytes_7", "bytes_55", "bytes_500"]

# Rows: benchmark, peers (the fastest of them counts), goal.
ROWS = [
    ("copy_map_100", ["nlohmann"], 0.01),
    ("copy_list_1000", ["nlohmann"], 0.01),
    ("build_map_100", ["nlohmann", "boost_json"], 0.33),
    ("build_map_100_mixed", ["nlohmann", "boost_json"], 0.33),
    ("build_map_from_list_100", ["nlohmann", "boost_json"], 0.2),
    ("copy_map_and_write_one_100", ["nlohmann"], 0.5),
    ("copy_map_and_write_one_10000", ["nlohmann"], 0.5),
    ("copy_map_and_write_one_100_mixed", ["nlohmann"], 0.5),
    ("copy_map_and_write_one_10000_mixed", ["nlohmann"], 0.5),
    ("find_16", ["boost_json"], 0.7),
    ("find_100", ["boost_json"], 1.15),
    ("find_10000", ["boost_json"], 2.2),
    ("find_16", ["nlohmann"], 0.6),
    ("find_100", ["nlohmann"], 0.6),
    ("find_10000", ["nlohmann"], 0.6),
    ("find_text_16", ["boost_json"], 1.2),
    ("find_text_100", ["boost_json"], 1.5),
    ("equal_maps_10000", ["nlohmann"], 1.1),
    ("make_integer", ["nlohmann"], 2.0),
    ("make_double", ["nlohmann"], 2.0),
    ("copy_integer", ["nlohmann"], 2.2),
    ("copy_double", ["nlohmann"], 2.2),
    ("make_string", ["nlohmann"], None),
    ("copy_string", ["nlohmann"], None),
    ("list_1000_from_range", ["std_vector"], 1.1),
    *[("binary_write_" + document, ["msgpack_cxx"], 0.7) for document in DOCUMENTS],
    ("binary_read_settings", ["flexbuffers"], 1.0),
    ("binary_read_records", ["flexbuffers"], 0.6),
    ("binary_read_mixed", ["flexbuffers"], 1.0),
    ("binary_read_inventory", ["flexbuffers"], 0.8),
    *[("binary_read_" + document, ["msgpack_cxx"], None) for document in DOCUMENTS],
    *[("text_write_" + document, ["nlohmann_json"], None) for document in DOCUMENTS[:2]],
    *[("text_read_" + document, ["nlohmann_json"], None) for document in DOCUMENTS[:2]],
    *[("coded_write_" + document, ["plain"], 1.0) for document in DOCUMENTS],
    *[("coded_read_" + document, ["plain"], 0.77) for document in DOCUMENTS],
    *[(f"json_stream_{document}", ["memory"], 1.3) for document in ("configuration", "records", "twitter")],
    *[(f"query_{names}_{size}", ["nlohmann_value", "nlohmann_get"], None)
      for names in ("ready", "text") for size in (10, 100, 1000)],
    ("query_failing_10000", ["to_text"], 2.0),
    ("render_settings", ["ostream"], 0.6),
    ("render_settings", ["fmt"], 1.5),
    ("intern_known_name", ["unordered_set"], 0.6),
    ("intern_known_name/2", ["unordered_set"], 0.3),
]

# Rows of the table of scale: benchmark, the benchmark it is compared with.
SCALE_ROWS = [
    *[(f"scale_size_{records}", "scale_size_1") for records in (1, 10, 100, 1_000, 10_000, 100_000)],
    *[(f"scale_documents_{count}", "scale_documents_1") for count in (1, 10, 100, 1_000)],
    ("scale_threads/2", "scale_threads"),
]


def scale_goal(work):
    """The largest good ratio of a row to the one it is compared with. Two threads take turns at what
    is counted, so that each operation should take little more than half of the time."""
    return 1 / 1.8 if work == "scale_threads/2" else 1.2


def seal_goals(work, name):
    """The goals against Crypto++ EAX and against the plain calls of `AES_encrypt`."""
    if work == "verify":
        return (1.0 if name == "64_KiB" else None), None
    return ({"64_B": 1 / 1.5, "1_KiB": 1 / 1.3, "64_KiB": 1 / 1.2}.get(name),
            1 / 6 if (work, name) == ("seal", "64_KiB") else None)


def json_goals(work, document):
    """The goals against nlohmann, RapidJSON and Boost.JSON."""
    if work == "walk":
        return None, None, 1.5
    if work == "write":
        return (0.4 if document not in JSON_NUMBERS else None), None, 1.0
    if document.startswith("bytes_"):
        return None, None, 1.5
    if document.endswith("_known"):
        return 0.4, None, 0.8
    if document in JSON_NUMBERS:
        return 1 / 3, None, 1.0
    return (0.4, 1.2, 0.75) if document in JSON_TREES else (0.4, None, 1.0)


def peak_goals(document):
    """The goals for bytes per byte of text, and against nlohmann."""
    return (5.0 if document == "records" else None), 0.7
