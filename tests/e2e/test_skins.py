"""The skins on the screen, at every scaling; pictures of them are kept for a person."""

from __future__ import annotations

import pathlib
import shutil
from collections.abc import Callable

import clips
import numpy as np
import pytest
import skins
from looks import COMPACT, EXPANDED, FIXED_PICTURES, Look
from player import PLAYING, Player
from records import Playlist, write_playlist
from remote import (
    CLOCK,
    EXIT_BUTTON,
    HIGHLIGHTED,
    LIST,
    LIST_BUTTON,
    PAUSE_BUTTON,
    PLAY_BUTTON,
    STOP_BUTTON,
    TITLE,
    Remote,
)
from screen import Colour, Screen
from skins import Skin
from stage import BUILD
from waiting import equals, until

PICTURES = BUILD / "screens"
CLIP_TITLE = "A quiet day by the sea"
LONG_TITLE = "The longest evening of a whole summer by the sea, told from both ends"
PAUSED_AT = 4
REMOTE_AT = (60, 340)
ITEMS = [
    CLIP_TITLE,
    "The ferry leaves",
    "Grandmother's garden, autumn",
    "Lighthouse in the fog",
    "Première neige",
    "Two dogs and a kite",
]
AWAY = (1260, 1000)  # from all windows

# What the remote looks like without a skin.
PLAIN_FACE: Colour = (36, 38, 43)
PLAIN_TRACK: Colour = (110, 115, 128)
PLAIN_BUTTON: Colour = (52, 55, 62)


def settings(skin: str, percent: int = 100) -> dict[int, str]:
    """Both windows stand so that the largest remote fits on the screen."""
    places = {23: 60, 24: 20, 25: 320, 26: 240, 28: REMOTE_AT[0], 29: REMOTE_AT[1]}
    twips = {number: str(round(pixels * 1500 / percent)) for number, pixels in places.items()}
    return {1: "1", **twips, 9: skin}


def hide_tool_tips(player: Player) -> None:
    """They would lie over the pictures."""
    activate = 0x401
    player.ctl.ask("send", f"tooltips_class32@{player.process}", "", activate, 0, 0)


def open_as(player: Player, folder: pathlib.Path, title: str) -> Remote:
    """Opens the usual clip under another name, and pauses it."""
    clip = folder / f"{title}.avi"
    shutil.copy(clips.path(), clip)
    player.pointer.move(AWAY)
    player.open_any(clip)
    hide_tool_tips(player)
    player.pause_at(PAUSED_AT)
    remote = Remote(player)
    equals(lambda: remote.text(CLOCK), f"00:00:{PAUSED_AT:02}", 5, "the time")
    assert remote.text(TITLE) == title
    return remote


@pytest.mark.parametrize("percent", [100, 150, 200])
@pytest.mark.parametrize("name", skins.NAMES)
def test_skin_dresses_the_remote(
    scaled_player: Callable[[int], Player],
    screen: Screen,
    tmp_path: pathlib.Path,
    name: str,
    percent: int,
) -> None:
    player = scaled_player(96 * percent // 100)
    player.folder.set_options(settings(name, percent))
    items = [(f"{title}.avi", f"C:\\{title}.avi") for title in ITEMS]
    write_playlist(player.folder.playlist_file, Playlist(items))
    remote, skin = open_as(player, tmp_path, CLIP_TITLE), Skin(name)

    def flaws_in_sight() -> list[str]:
        nonlocal look
        look = Look(remote, screen, skin, percent)
        return look.flaws(height, PAUSED_AT / clips.SECONDS)

    for state, height in (("compact", COMPACT), ("expanded", EXPANDED)):
        if state == "expanded":
            remote.click(LIST_BUTTON)
            until(lambda: remote.shows(LIST), 5, "the list is shown")
        remote.point_at(PLAY_BUTTON)
        look = Look(remote, screen, skin, percent)
        equals(flaws_in_sight, [], 5, f"what is wrong with the {state} remote")
        PICTURES.mkdir(parents=True, exist_ok=True)
        look.image.save(PICTURES / f"remote-{name}-{state}-{percent}.png")


def wait_for_look(read: Callable[[], dict[str, bool]]) -> None:
    """Until all of it is true."""
    equals(lambda: [rule for rule, kept in read().items() if not kept], [], 5, "what is wrong")


def runs(filled: np.ndarray) -> list[tuple[int, int]]:
    """Where each group of neighbours begins and ends."""
    edges = np.flatnonzero(np.diff(np.concatenate([[False], filled, [False]]).astype(int)))
    return [(int(begin), int(end)) for begin, end in edges.reshape(-1, 2)]


def ends_in_three_dots(ink: np.ndarray) -> bool:
    """Three square marks of the same size and height, behind something taller."""
    marks = runs(ink.any(axis=0))
    boxes = [(end - begin, runs(ink[:, begin:end].any(axis=1))) for begin, end in marks[-4:]]
    if len(boxes) < 4 or any(rows != boxes[-1][1] for _, rows in boxes[1:]):
        return False
    (top, bottom), *others = boxes[-1][1]
    square = all(abs(width - (bottom - top)) <= 1 for width, _ in boxes[1:])
    before = boxes[0][1]
    return square and not others and before[-1][1] - before[0][0] >= 2 * (bottom - top)


@pytest.mark.parametrize("percent", [100, 200])
def test_long_title_ends_in_an_ellipsis(
    scaled_player: Callable[[int], Player], screen: Screen, tmp_path: pathlib.Path, percent: int
) -> None:
    player = scaled_player(96 * percent // 100)
    player.folder.set_options(settings("Daylight", percent))
    remote = open_as(player, tmp_path, LONG_TITLE)

    def rules() -> dict[str, bool]:
        look = Look(remote, screen, Skin("Daylight"), percent)
        return {
            "the title": look.flaws_of_text(TITLE) == [],
            "the time": look.flaws_of_text(CLOCK) == [],
            "the face between them": look.shows_face(),
            "the ellipsis": ends_in_three_dots(look.ink(TITLE) > 0.3),
        }

    wait_for_look(rules)


# ---- skins that are not whole ----


def copy_of_daylight(player: Player, name: str) -> Skin:
    folder = player.folder.path / "Skins"
    shutil.copytree(skins.SKINS / "Daylight", folder / name)
    return Skin(name, folder)


def plays_in(player: Player, skin: str) -> Remote:
    """The player starts and plays with this skin, and asks nothing."""
    player.folder.set_options(settings(skin))
    player.pointer.move(AWAY)
    player.open()
    player.wait_for(state=PLAYING)
    assert player.is_in("#32770", "gone")
    return Remote(player)


def test_missing_skin_leaves_the_remote_plain(player: Player, screen: Screen) -> None:
    remote = plays_in(player, "Nowhere")

    def rules() -> dict[str, bool]:
        look = Look(remote, screen, Skin("Daylight"))
        face = np.unique(look.pixels[look.bare()], axis=0)
        plain = (TITLE, CLOCK, EXIT_BUTTON, PLAY_BUTTON)
        return {
            "the face": face.tolist() == [list(PLAIN_FACE), list(PLAIN_TRACK)],
            "the small button": look.background("Command1") == PLAIN_BUTTON,
            **{control: look.background(control) == PLAIN_FACE for control in plain},
        }

    wait_for_look(rules)
    assert not (player.folder.path / "Skins" / "Nowhere").exists()


def test_damaged_picture_ends_the_dressing(player: Player, screen: Screen) -> None:
    skin = copy_of_daylight(player, "Torn")
    picture = skin.folder / "button3.bmp"
    picture.write_bytes(picture.read_bytes()[:1000])
    remote = plays_in(player, "Torn")
    assert "button3.bmp of the skin is not a readable bitmap" in player.log_text()

    def rules() -> dict[str, bool]:
        look = Look(remote, screen, skin)
        plain = (PAUSE_BUTTON, EXIT_BUTTON, TITLE)
        return {
            "Play is dressed": look.shows_picture(PLAY_BUTTON, "button1.bmp"),
            "Stop is dressed": look.shows_picture(STOP_BUTTON, "button2.bmp"),
            **{control: look.background(control) == PLAIN_FACE for control in plain},
        }

    wait_for_look(rules)


def test_damaged_colour_ends_the_dressing(player: Player, screen: Screen) -> None:
    skin = copy_of_daylight(player, "Pale")
    colours = skin.folder / "nqp_colors.cfg"
    content = bytearray(colours.read_bytes())
    at = (skins.BUTTON_BACK - 1) * skins.COLOUR_RECORD
    content[at : at + 6] = b"\x04\x00blue"
    colours.write_bytes(content)
    remote = plays_in(player, "Pale")
    assert f"Record {skins.BUTTON_BACK} of the skin's nqp_colors.cfg" in player.log_text()

    def rules() -> dict[str, bool]:
        look = Look(remote, screen, skin)
        pictures = {name: file for name, (file, _) in FIXED_PICTURES.items()}
        del pictures[HIGHLIGHTED[PLAY_BUTTON]]
        return {
            "the title": look.flaws_of_text(TITLE) == [],
            "the small button": look.background("Command1") == PLAIN_BUTTON,
            "the time": look.background(CLOCK) == PLAIN_FACE,
            **{file: look.shows_picture(name, file) for name, file in pictures.items()},
        }

    wait_for_look(rules)


def test_skin_without_colours_gains_an_empty_colour_file(player: Player, screen: Screen) -> None:
    skin = copy_of_daylight(player, "Bare")
    colours = skin.folder / "nqp_colors.cfg"
    colours.unlink()
    remote = plays_in(player, "Bare")
    assert colours.read_bytes() == b""

    def rules() -> dict[str, bool]:
        # Beside the colours the folder is that of the skin it was copied from.
        look = Look(remote, screen, Skin("Daylight"))
        return {
            "Exit is dressed": look.shows_picture(EXIT_BUTTON, "exit.bmp"),
            "Play is dressed": look.shows_picture(PLAY_BUTTON, "button1.bmp"),
            "the title is plain": look.background(TITLE) == PLAIN_FACE,
        }

    wait_for_look(rules)
