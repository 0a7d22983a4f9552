"""The desktop of a user who has been through the first steps and has chosen a pack."""

import json

from harness.desktop import Desktop

PACK = "pain"


def write_settings(desktop: Desktop) -> None:
    settings = desktop.configuration / "quiverly/settings.json"
    settings.parent.mkdir(parents=True)
    settings.write_text(json.dumps({"bonko.onboardingCompleted": 1, "bonko.pack": PACK}))


def onboarded_desktop() -> Desktop:
    desktop = Desktop()
    write_settings(desktop)
    return desktop
