"""The settings file of a desktop's user."""

import json
from pathlib import Path

from harness.desktop import Desktop

ONBOARDED = {"bonko.onboardingCompleted": 1}


def settings_file(desktop: Desktop) -> Path:
    return desktop.configuration / "quiverly" / "settings.json"


def write_settings(desktop: Desktop, settings: dict[str, object]) -> None:
    write_settings_text(desktop, json.dumps(settings))


def write_settings_text(desktop: Desktop, content: str) -> None:
    file = settings_file(desktop)
    file.parent.mkdir(exist_ok=True)
    file.write_text(content)


def read_settings(desktop: Desktop) -> dict[str, object]:
    """The settings stored so far, none while there is no file."""
    file = settings_file(desktop)
    return json.loads(file.read_text()) if file.exists() else {}
