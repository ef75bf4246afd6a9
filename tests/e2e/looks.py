"""The remote control as it is seen, beside what its skin should make of it."""

from __future__ import annotations

from dataclasses import astuple, replace

import numpy as np
import skins
from player import REMOTE
from remote import (
    CLOCK,
    EXIT_BUTTON,
    HELP_BUTTON,
    HIDE_ALL_BUTTON,
    HIDE_BUTTON,
    HIGHLIGHTED,
    LIST,
    LIST_BUTTON,
    OPEN_BUTTON,
    OPTIONS_BUTTON,
    PAUSE_BUTTON,
    PLAY_BUTTON,
    POSITION_KNOB,
    SIZE_GRIP,
    STOP_BUTTON,
    TITLE,
    VOLUME_KNOB,
    WIDTH_GRIP,
    Remote,
)
from screen import Colour, Rect, Screen
from skins import Skin, scaled, scaled_rect

COMPACT, EXPANDED = 890 / 15, 320
WIDTH = 560

# The picture of each control while the pointer is over Play, and where it stands at 100 %.
FIXED_PICTURES = {
    HIGHLIGHTED[PLAY_BUTTON]: ("xbutton1.bmp", Rect(10, 12, 34, 34)),
    PAUSE_BUTTON: ("button3.bmp", Rect(46, 12, 34, 34)),
    STOP_BUTTON: ("button2.bmp", Rect(82, 12, 34, 34)),
    OPEN_BUTTON: ("button4.bmp", Rect(118, 12, 34, 34)),
    OPTIONS_BUTTON: ("options.bmp", Rect(468, 8, 20, 20)),
    HELP_BUTTON: ("help.bmp", Rect(492, 8, 20, 20)),
    LIST_BUTTON: ("playlist.bmp", Rect(516, 8, 20, 20)),
    HIDE_BUTTON: ("hideremote.bmp", Rect(468, 31, 20, 20)),
    HIDE_ALL_BUTTON: ("hideall.bmp", Rect(492, 31, 20, 20)),
    EXIT_BUTTON: ("exit.bmp", Rect(516, 31, 20, 20)),
    WIDTH_GRIP: ("resize.bmp", Rect(544, 44, 12, 12)),
    VOLUME_KNOB: ("volume.bmp", Rect(442, 8, 18, 10)),
}
KNOB_WIDTH = 17
LIST_AT = Rect(10, 58, 540, 250)

# Whose text is written in which colours.
TEXTS = {
    TITLE: (skins.TITLE_TEXT, skins.TITLE_BACK),
    CLOCK: (skins.TIME_TEXT, skins.TIME_BACK),
    **{f"Text{n}": (skins.FIELD_TEXT, skins.FIELD_BACK) for n in range(1, 7)},
    **{f"Label{n}": (skins.FIELD_TEXT, skins.FIELD_BACK) for n in range(3, 7)},
    "Command1": (skins.BUTTON_TEXT, skins.BUTTON_BACK),
    "Command2": (skins.BUTTON_TEXT, skins.BUTTON_BACK),
}

# Whose letters reach down to the lower edge.
FULL_HEIGHT = ("Command1",)

# Levels of 255: what rounding on the way to the screen may do.
ROUNDING, ROUNDING_OF_BLENDING = 1, 2
STROKE = 0.6  # the least that the middle of a thin stroke has of the colour of the text
SMOOTH = 4  # shades of the edges of letters, at the least


class Look:
    """The remote as it is seen, beside what its skin should make of it."""

    def __init__(self, remote: Remote, screen: Screen, skin: Skin, percent: int = 100) -> None:
        self._remote = remote
        self.window = remote.player.rect(REMOTE)
        self.image = screen.image().crop(
            (self.window.left, self.window.top, self.window.right, self.window.bottom)
        )
        self.pixels = np.asarray(self.image).astype(float)
        self.skin = skin
        self.percent = percent

    @property
    def face(self) -> np.ndarray:
        return self.skin.face(self.window.width, self.window.height, self.percent)

    def place(self, control: str) -> Rect:
        """In the window, not on the screen."""
        seen = self._remote.rect(control)
        return replace(seen, left=seen.left - self.window.left, top=seen.top - self.window.top)

    def part(self, control: str) -> np.ndarray:
        place = self.place(control)
        return self.pixels[place.top : place.bottom, place.left : place.right]

    def background(self, control: str) -> Colour:
        """The colour that most of it has."""
        colours, counts = np.unique(self.part(control).reshape(-1, 3), axis=0, return_counts=True)
        red, green, blue = colours[counts.argmax()].astype(int)
        return int(red), int(green), int(blue)

    def bare(self) -> np.ndarray:
        """Where nothing but the face is seen."""
        bare = np.ones(self.pixels.shape[:2], dtype=bool)
        rows = self._remote.player.ctl.ask("tree", f"{REMOTE}@{self._remote.player.process}")
        for row in rows:
            if row[5] == "1":
                left, top, width, height = map(int, row[7:11])
                left, top = left - self.window.left, top - self.window.top
                bare[top : top + height, left : left + width] = False
        return bare

    def shows_picture(self, control: str, file: str) -> bool:
        """Of a control that reaches out of the window, what lies in it."""
        seen, place = self.part(control), self.place(control)
        under = self.face[place.top : place.bottom, place.left : place.right]
        wanted = self.skin.over(under, file, place.width, place.height)
        return bool(np.abs(seen - wanted).max() <= ROUNDING_OF_BLENDING)

    def shows_face(self) -> bool:
        difference = np.abs(self.pixels - self.face).max(axis=2)
        return bool(difference[self.bare()].max() <= ROUNDING)

    def ink(self, control: str) -> np.ndarray:
        """How much each pixel has of the colour of the text, and not of the background."""
        text, back = map(self.skin.colour, TEXTS[control])
        way = np.subtract(text, back).astype(float)
        share: np.ndarray = (self.part(control) - back) @ way / (way @ way)
        return share

    def flaws_of_text(self, control: str) -> list[str]:
        text, back = map(self.skin.colour, TEXTS[control])
        part, ink = self.part(control), self.ink(control)
        mixture = back + ink[..., None] * np.subtract(text, back)
        shades = len(np.unique(part.reshape(-1, 3), axis=0))
        rules = {
            "lies on its background": self.background(control) == back,
            "is all of two colours": np.abs(part - mixture).max() <= ROUNDING,
            "has strokes": ink.max() >= STROKE,
            "is smooth": shades >= SMOOTH,
            "is whole": ink[0].max() == 0 and (control in FULL_HEIGHT or ink[-1].max() == 0),
        }
        return [f"{control} {rule}: no" for rule, kept in rules.items() if not kept]

    def flaws(self, height: float, played: float) -> list[str]:
        """What a person would see to be wrong while the pointer is over Play. `height` is that of
        the window at 100 %, `played` the share of the clip that lies behind."""
        size = scaled(WIDTH, self.percent), scaled(height, self.percent)
        if not near(self.window, replace(self.window, width=size[0], height=size[1])):
            return [f"the window is {self.window}, not of the size {size}"]
        found = [flaw for control in TEXTS for flaw in self.flaws_of_text(control)]
        for control, (file, at) in FIXED_PICTURES.items():
            if not near(self.place(control), scaled_rect(at, self.percent)):
                found.append(f"{control} is at {self.place(control)}")
            if not self.shows_picture(control, file):
                found.append(f"{control} does not show {file}")
        if not self.shows_face():
            found.append("the face is another one")
        found += self._flaws_of_position(played)
        if height != COMPACT:
            found += self._flaws_of_list()
        return found

    def _flaws_of_position(self, played: float) -> list[str]:
        track = skins.POSITION_TRACK
        left = track.left + (track.width - KNOB_WIDTH) * played
        knob = self.place(POSITION_KNOB)
        found = []
        if abs(knob.left - left * self.percent / 100) > 1 + self.percent / 100:
            found.append(f"the position knob is at {knob}")
        if abs(knob.centre[1] - scaled_rect(track, self.percent).centre[1]) > 1:
            found.append("the position knob is beside its track")
        if not self.shows_picture(POSITION_KNOB, "position.bmp"):
            found.append("the position knob does not show its picture")
        return found

    def _flaws_of_list(self) -> list[str]:
        found = []
        if not near(self.place(LIST), scaled_rect(LIST_AT, self.percent)):
            found.append(f"the list is at {self.place(LIST)}")
        back = self.skin.colour(skins.LIST_BACK)
        if self.background(LIST) != back or (self.part(LIST)[-1] != back).any():
            found.append("the list has another colour")
        if not self.shows_picture(SIZE_GRIP, "resize.bmp"):
            found.append("the grip does not show its picture")
        return found


def near(seen: Rect, wanted: Rect) -> bool:
    pairs = zip(astuple(seen), astuple(wanted))
    return all(abs(a - b) <= 1 for a, b in pairs)
