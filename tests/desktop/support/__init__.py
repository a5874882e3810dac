import sys
from pathlib import Path

SCRIPTS = Path(__file__).resolve().parents[3] / "scripts"
for folder in ("desktop", "demo"):
    sys.path.insert(0, str(SCRIPTS / folder))
