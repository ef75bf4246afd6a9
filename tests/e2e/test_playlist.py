"""The playlist: playing through it, its menu, its keys, its looks and its file."""

from __future__ import annotations

import concurrent.futures
import contextlib
import pathlib
import subprocess
from collections.abc import Callable, Iterator

import clips
import numpy as np
import pytest
import skins
from clips import PLAIN_CLIPS, PLAIN_SECONDS, PlainClip
from conftest import Desk
from player import FILE_DIALOG, PLAYING, REMOTE, STOPPED, Player
from pointer import RIGHT, Point
from records import Playlist, read_playlist, write_playlist
from remote import LIST, LIST_BUTTON, TITLE, Remote
from screen import Rect, Screen, colour_at, is_near
from skins import Skin
from sound import RATE, Recording, Sound
from stage import BUILD, windows_path
from waiting import equals, until
from windowmap import control_id

PICTURES = BUILD / "screens"

# The system's pop-up menu, and what the list's menu holds.
POPUP_MENU = "#32768"
ADD, CLEAR_SELECTED, CLEAR, REPEAT = range(4)
ENTRIES = 4
ADD_DIALOG = f"{FILE_DIALOG}:Nuvex Quillon Player - Add file(s) to playlist..."

# Messages of a list box.
GET_SELECTED, GET_COUNT, GET_TOP, GET_LINE_HEIGHT = 0x187, 0x18B, 0x18E, 0x1A1

AWAY: Point = (1260, 1000)  # from all windows
LETTERS = Playlist([(f"{letter}.avi", f"C:\\{letter}.avi") for letter in "abcdefgh"])


class PlaylistBox:
    """The list of a running player, in sight."""

    def __init__(self, player: Player) -> None:
        self.player = player
        self.pointer = player.pointer
        self.remote = Remote(player)
        self._window = f"{REMOTE}@{player.process}"
        self._control = control_id(REMOTE, LIST)
        self.remote.click(LIST_BUTTON)
        until(self._is_laid_out, 5, "the list is shown")

    def _is_laid_out(self) -> bool:
        return self.remote.shows(LIST) and self.remote.rect(LIST).height > 0

    def _ask(self, message: int, number: int = 0) -> int:
        answer = self.player.ctl.ask("send", self._window, self._control, message, number, 0)
        return int(answer[0][0])

    def count(self) -> int:
        return self._ask(GET_COUNT)

    def selected(self) -> list[int]:
        return [line for line in range(self.count()) if self._ask(GET_SELECTED, line)]

    def area(self) -> Rect:
        """Without the scroll bars."""
        answer = self.player.ctl.ask("client", self._window, self._control)
        return Rect(*map(int, answer[0]))

    def line(self, number: int) -> Rect:
        area, height = self.area(), self._ask(GET_LINE_HEIGHT)
        above = number - self._ask(GET_TOP)
        return Rect(area.left, area.top + above * height, area.width, height)

    def lines_in_sight(self) -> range:
        """Those that are whole."""
        top = self._ask(GET_TOP)
        return range(top, min(self.count(), top + self.area().height // self.line(top).height))

    def click(self, number: int) -> None:
        self.pointer.click(self.line(number).centre)

    def select(self, number: int) -> None:
        """The list has the keys then."""
        self.click(number)
        equals(self.selected, [number], 5, "the selected lines")
        self.pointer.wait_for_keys_at(self.player.rect(REMOTE))

    def double_click(self, number: int) -> None:
        self.pointer.double_click(self.line(number).centre)

    def open_menu(self) -> Rect:
        self.pointer.click(self.area().centre, RIGHT)
        self.player.wait(POPUP_MENU, "visible")
        return self.player.rect(POPUP_MENU)

    def choose(self, entry: int) -> None:
        self.pointer.click(self.open_menu().point(0.5, (entry + 0.5) / ENTRIES))
        self.player.wait(POPUP_MENU, "gone")

    def close_menu(self) -> None:
        self.pointer.key("Escape")
        self.player.wait(POPUP_MENU, "gone")

    def open_add_dialog(self) -> None:
        self.choose(ADD)
        self.player.wait(ADD_DIALOG, "visible")


def start_with(player: Player, playlist: Playlist) -> PlaylistBox:
    write_playlist(player.folder.playlist_file, playlist)
    player.start_and_show()
    box = PlaylistBox(player)
    assert box.count() == len(playlist.items)
    return box


def saved(player: Player) -> Playlist:
    """What the file holds after the end of the program."""
    player.close()
    return read_playlist(player.folder.playlist_file)


def without(playlist: Playlist, *lines: int) -> Playlist:
    return Playlist([item for line, item in enumerate(playlist.items) if line not in lines])


# ---- playing ----

SLICE_SECONDS = 0.1
AUDIBLE_DB = -40.0
LOADING_SECONDS = 2.0  # more than it takes to open all clips
LONGEST_MISSING_SECONDS = 0.3  # of a tone, at its edges


def plain_item(clip: PlainClip) -> tuple[str, str]:
    return clip.name, windows_path(clips.path(clip.name))


PLAIN_ITEMS = [plain_item(clip) for clip in PLAIN_CLIPS]


def tones(recording: Recording) -> list[tuple[float, float]]:
    """The frequency and the seconds of each tone that is heard, in their order; silence is 0 Hz."""
    size = round(SLICE_SECONDS * RATE)
    found: list[tuple[float, float]] = []
    for start in range(0, len(recording.samples) - size + 1, size):
        part = Recording(recording.samples[start : start + size])
        heard = part.frequency() if part.level() > AUDIBLE_DB else 0.0
        known = next((clip.hertz for clip in PLAIN_CLIPS if abs(clip.hertz - heard) < 20), heard)
        if found and found[-1][0] == known:
            found[-1] = (known, found[-1][1] + SLICE_SECONDS)
        else:
            found.append((known, SLICE_SECONDS))
    return found


def shown_clip(player: Player, screen: Screen) -> PlainClip | None:
    seen = colour_at(screen.pixels(), player.client().centre)
    return next((clip for clip in PLAIN_CLIPS if is_near(seen, clip.colour)), None)


@pytest.mark.parametrize(("repeat", "starts_by_itself"), [("0", "1"), ("1", "0")])
def test_list_plays_through(
    player: Player, desk: Desk, screen: Screen, sound: Sound, repeat: str, starts_by_itself: str
) -> None:
    order = [*PLAIN_CLIPS, *([PLAIN_CLIPS[0]] if repeat == "1" else [])]
    player.folder.set_options({4: starts_by_itself})
    box = start_with(player, Playlist(PLAIN_ITEMS, repeat))
    seen: list[PlainClip] = []
    recorded = desk.stage.folder / "recording.raw"
    recorded.unlink(missing_ok=True)

    def look() -> bool:
        clip = shown_clip(player, screen)
        if clip is not None and seen[-1:] != [clip]:
            seen.append(clip)
        return listening.done()

    # Without repeat long enough for a fourth clip to be heard, which must not come.
    seconds = (len(PLAIN_CLIPS) + 1) * PLAIN_SECONDS + LOADING_SECONDS
    with concurrent.futures.ThreadPoolExecutor(max_workers=1) as listener:
        listening = listener.submit(sound.record, seconds)
        # A recorder of a silent sink needs a second or two before it hears anything.
        until(lambda: recorded.exists() and recorded.stat().st_size > 0, 10, "it is recorded")
        box.double_click(0)
        until(look, seconds + 15, "the recording is made")
    heard = tones(listening.result())

    assert heard[0][0] == 0, "the recording begins before the first clip"
    assert [clip.name for clip in seen[: len(order)]] == [clip.name for clip in order]
    loud = [(hertz, length) for hertz, length in heard if hertz and length > SLICE_SECONDS]
    assert [hertz for hertz, _ in loud[: len(order)]] == [clip.hertz for clip in order], heard
    for hertz, length in loud[: len(PLAIN_CLIPS)]:
        assert length == pytest.approx(PLAIN_SECONDS, abs=LONGEST_MISSING_SECONDS), hertz
    if repeat == "0":
        assert len(seen) == len(order) and len(loud) == len(order), heard
        assert player.playback().state == STOPPED
        assert box.selected() == [len(PLAIN_CLIPS) - 1]
        assert box.remote.text(TITLE) == "blue"


def test_enter_plays_the_selected_line(player: Player, screen: Screen) -> None:
    box = start_with(player, Playlist(PLAIN_ITEMS))
    box.select(1)
    player.pointer.key("Return")
    player.wait_for(state=PLAYING, visible=1)
    assert box.remote.text(TITLE) == "green"
    until(lambda: shown_clip(player, screen) == PLAIN_CLIPS[1], 5, "its picture is seen")


def test_missing_file_leaves_the_player_usable(player: Player, screen: Screen) -> None:
    box = start_with(player, Playlist([("gone.avi", "C:\\gone.avi"), plain_item(PLAIN_CLIPS[2])]))
    box.double_click(0)
    equals(lambda: box.remote.text(TITLE), "gone", 5, "the title")
    box.remote.settle()
    assert player.is_in(FILE_DIALOG, "gone")
    assert player.playback().state != PLAYING
    box.double_click(1)
    player.wait_for(state=PLAYING, visible=1)
    until(lambda: shown_clip(player, screen) == PLAIN_CLIPS[2], 5, "its picture is seen")
    assert not player.crash_lines()


# ---- adding ----


def from_dialog(folder: pathlib.Path, *names: str) -> list[tuple[str, str]]:
    """Later files stand in front of earlier ones, and all texts end with a NUL character."""
    return [(f"{name}\0", f"{windows_path(folder / name)}\0") for name in reversed(names)]


def test_one_file_goes_behind_the_selected_line(player: Player, tmp_path: pathlib.Path) -> None:
    chosen = tmp_path / "Café à la crème 电影.avi"
    chosen.touch()
    box = start_with(player, LETTERS)
    box.select(2)
    box.open_add_dialog()
    player.answer_open_dialog(chosen)
    equals(box.count, len(LETTERS.items) + 1, 5, "the number of lines")
    assert box.selected() == [2]
    items = [*LETTERS.items[:3], *from_dialog(tmp_path, chosen.name), *LETTERS.items[3:]]
    assert saved(player) == Playlist(items)


@pytest.mark.parametrize(
    "names",
    [
        pytest.param(["a first.avi", "Ünïcödé.avi", "第三部 电影.avi"], id="3"),
        pytest.param([f"été {number:03} 影片.avi" for number in range(200)], id="200"),
    ],
)
def test_several_files_go_to_the_top(
    player: Player, tmp_path: pathlib.Path, names: list[str]
) -> None:
    folder = tmp_path / "many files 多"
    folder.mkdir()
    for name in names:
        (folder / name).touch()
    box = start_with(player, Playlist([]))
    box.open_add_dialog()
    player.answer_with_several(folder, names)
    equals(box.count, len(names), 5, "the number of lines")
    assert saved(player) == Playlist(from_dialog(folder, *names))


def test_cancelling_the_dialog_adds_nothing(player: Player) -> None:
    box = start_with(player, LETTERS)
    box.select(3)
    box.open_add_dialog()
    player.answer_open_dialog(None)
    box.remote.settle()
    assert box.count() == len(LETTERS.items)
    assert box.selected() == [3]
    assert saved(player) == LETTERS


# ---- the menu and the keys ----


KeyHeld = Callable[[str], contextlib.AbstractContextManager[None]]


@pytest.fixture
def key_held(desk: Desk) -> KeyHeld:
    """Makes a block during which a key is down."""

    @contextlib.contextmanager
    def hold(key: str) -> Iterator[None]:
        subprocess.run(["xdotool", "keydown", key], env=desk.stage.env, check=True, timeout=20)
        try:
            yield
        finally:
            subprocess.run(["xdotool", "keyup", key], env=desk.stage.env, check=True, timeout=20)

    return hold


def test_menu_removes_the_lines_chosen_with_ctrl(player: Player, key_held: KeyHeld) -> None:
    box = start_with(player, LETTERS)
    box.select(1)
    with key_held("ctrl"):
        for line in (3, 6, 4, 3):
            box.click(line)
        equals(box.selected, [1, 4, 6], 5, "the selected lines")
    box.choose(CLEAR_SELECTED)
    equals(box.count, 5, 5, "the number of lines")
    assert box.selected() == []
    assert saved(player) == without(LETTERS, 1, 4, 6)


def test_delete_removes_the_lines_chosen_with_shift(player: Player, key_held: KeyHeld) -> None:
    box = start_with(player, LETTERS)
    box.select(5)
    with key_held("shift"):
        box.click(2)
        equals(box.selected, [2, 3, 4, 5], 5, "the selected lines")
    player.pointer.key("Delete")
    equals(box.count, 4, 5, "the number of lines")
    player.pointer.key("Delete")
    box.remote.settle()
    assert box.count() == 4, "nothing is selected, nothing is removed"
    assert saved(player) == without(LETTERS, 2, 3, 4, 5)


def test_menu_clears_the_list(player: Player) -> None:
    box = start_with(player, LETTERS)
    box.choose(CLEAR)
    equals(box.count, 0, 5, "the number of lines")
    assert saved(player) == Playlist([])


def test_repeat_is_toggled_and_remembered(player: Player, screen: Screen) -> None:
    """The entry's picture tells whether it has a check mark."""

    def look_of_repeat(box: PlaylistBox) -> bytes:
        menu = box.open_menu()
        player.pointer.move(AWAY)
        top = menu.point(0, REPEAT / ENTRIES)[1]
        pixels = screen.pixels()[top : menu.bottom, menu.left : menu.right]
        box.close_menu()
        return pixels.tobytes()

    box = start_with(player, LETTERS)
    plain = look_of_repeat(box)
    box.choose(REPEAT)
    checked = look_of_repeat(box)
    assert checked != plain
    box.choose(REPEAT)
    assert look_of_repeat(box) == plain
    box.choose(REPEAT)
    assert saved(player) == Playlist(LETTERS.items, "1")

    player.start_and_show()
    box = PlaylistBox(player)
    assert look_of_repeat(box) == checked
    box.choose(REPEAT)
    assert saved(player) == LETTERS


def test_menu_opens_by_right_click_and_keys_only(player: Player) -> None:
    box = start_with(player, LETTERS)
    box.select(2)
    box.remote.settle()
    assert player.is_in(POPUP_MENU, "gone")
    x, y = box.area().centre
    menu = box.open_menu()
    assert abs(menu.left - x) <= 2 and abs(menu.top - y) <= 2
    box.close_menu()
    for key in ("Menu", "shift+F10"):
        player.pointer.key(key)
        player.wait(POPUP_MENU, "visible")
        menu, area = player.rect(POPUP_MENU), box.area()
        assert area.left <= menu.left < area.right and area.top <= menu.top < area.bottom
        box.close_menu()
    assert box.selected() == [2]


# ---- looks ----

LONG_LIST = Playlist(
    [
        (f"{number:02} Gypsy Ångström jump 电影 {'qy' * (60 if number == 8 else 1)}.avi", "C:\\x")
        for number in range(1, 31)
    ]
)
ROUNDING = 1  # levels of 255, on the way to the screen
STROKE = 0.6  # the least that the middle of a thin stroke has of the colour of the text
FOCUS_RING = 1
MARGIN = 4  # between a text and the edge, pixels


@pytest.mark.parametrize("percent", [100, 200])
@pytest.mark.parametrize("name", skins.NAMES)
def test_lines_have_the_colours_of_the_skin(
    scaled_player: Callable[[int], Player],
    key_held: KeyHeld,
    screen: Screen,
    name: str,
    percent: int,
) -> None:
    player, skin = scaled_player(96 * percent // 100), Skin(name)
    # Both windows stand so that the largest remote fits on the screen.
    places = {23: 60, 24: 20, 25: 320, 26: 240, 28: 60, 29: 340}
    twips = {number: str(round(pixels * 1500 / percent)) for number, pixels in places.items()}
    player.folder.set_options({1: "1", **twips, 9: name})
    box = start_with(player, LONG_LIST)
    box.select(3)
    with key_held("ctrl"):
        box.click(5)
        equals(box.selected, [3, 5], 5, "the selected lines")
    player.pointer.move(AWAY)
    text, back = (skin.colour(record) for record in (skins.LIST_TEXT, skins.LIST_BACK))

    def flaws() -> list[str]:
        pixels = screen.pixels().astype(float)
        found = []
        for number in box.lines_in_sight():
            place = box.line(number)
            line = pixels[place.top : place.bottom, place.left : place.right]
            line = line[FOCUS_RING:-FOCUS_RING, FOCUS_RING:-FOCUS_RING]
            paper, ink = (text, back) if number in (3, 5) else (back, text)
            way = np.subtract(ink, paper).astype(float)
            share = (line - paper) @ way / (way @ way)
            mixture = paper + share[..., None] * way
            rules = {
                "lies on its background": float(np.median(share)) == 0,
                "is all of two colours": np.abs(line - mixture).max() <= ROUNDING,
                "has strokes": share.max() >= STROKE,
                "is whole": share[0].max() == 0 and share[-1].max() == 0,
            }
            found += [f"line {number} {rule}: no" for rule, kept in rules.items() if not kept]
        return found

    assert len(box.lines_in_sight()) >= 8
    equals(flaws, [], 5, "what is wrong with the lines")
    screen.save(PICTURES / f"playlist-{name}-{percent}.png", player.rect(REMOTE))


def test_long_line_is_scrolled_to_its_end(player: Player, screen: Screen) -> None:
    box, skin = start_with(player, LONG_LIST), Skin("Daylight")
    back = skin.colour(skins.LIST_BACK)
    ends = [box.line(number) for number in (6, 7)]
    short, long = (Rect(end.right - 40, end.top, 40, end.height) for end in ends)

    def is_blank(place: Rect, columns: slice) -> bool:
        part = screen.pixels()[place.top : place.bottom, place.left : place.right]
        return bool((part[:, columns] == back).all())

    until(lambda: not is_blank(long, slice(None)), 5, "the middle of the long line is seen")
    area = box.area()
    right_of_thumb = area.right - 40, area.bottom + 8
    player.pointer.click(right_of_thumb)
    player.pointer.move(AWAY)
    # The short lines are scrolled out, and the long one ends a little before the edge.
    first = Rect(area.left, short.top, 40, short.height)
    until(lambda: is_blank(first, slice(None)), 5, "the list is scrolled")
    assert not is_blank(long, slice(None, -MARGIN))
    assert is_blank(long, slice(-MARGIN, None))
