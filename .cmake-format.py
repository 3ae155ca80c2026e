# How cmake-format lays out CMake files; scripts/check-cmake-format holds it.
with section("parse"):
    additional_commands = {
        "panel_room": {"pargs": 1, "kwargs": {"STANDARD": 1, "LIBRARIES": "*"}},
        "panel_test": {
            "pargs": 1,
            "kwargs": {"SOURCES": "*", "LIBRARIES": "*", "TIMEOUT": 1, "ENVIRONMENT": "*"},
        },
        "panel_unit_test": {"pargs": 1, "kwargs": {"FOLDERS": "*", "LIBRARIES": "*"}},
        "pkg_check_modules": {"pargs": "*"},
    }
with section("format"):
    line_width = 100
    max_subgroups_hwrap = 4
with section("markup"):
    enable_markup = False  # comments stay as they are
