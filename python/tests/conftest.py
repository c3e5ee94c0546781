import os

import pytest


@pytest.fixture(scope="session")
def cli():
    """The command-line program the answers are compared with; the test is skipped without it."""
    path = os.environ.get("POKERMATH_CLI")
    if not path or not os.access(path, os.X_OK):
        pytest.skip("the pokermath command-line program is not built (set POKERMATH_CLI)")
    return path
