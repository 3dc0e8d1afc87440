#!/usr/bin/python3
"""What assistive technologies see and hear of the editor over AT-SPI: accessibility_test.py PROGRAM"""

import sys
import warnings

import session
from session import equal, until

session.enter_bus()
try:
    import gi

    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi, GLib
except (ImportError, ValueError) as lacking:
    session.skip(f"no AT-SPI for Python: {lacking}")

# Old calls, but the ones that screen readers make and the toolkit answers.
warnings.simplefilter("ignore", DeprecationWarning)

TEXT = "First line here. Second sentence.\n\nA third, long\tline: word\nlast"
LINE = Atspi.TextBoundaryType.LINE_START
WORD = Atspi.TextBoundaryType.WORD_START
SENTENCE = Atspi.TextBoundaryType.SENTENCE_START


def find(root, matches):
    """The first object below \a root that matches; none while the tree is still being made."""
    try:
        if root is None or matches(root):
            return root
        children = (root.get_child_at_index(i) for i in range(root.get_child_count()))
        return next((hit for hit in (find(child, matches) for child in children) if hit), None)
    except GLib.Error:
        return None


def find_text(name):
    return find(Atspi.get_desktop(0), lambda object: object.get_role() == Atspi.Role.TEXT and
                object.get_name() == name)


class Ear:
    """Keeps the events of some kinds, each as (kind, position, length, what)."""

    def __init__(self, *kinds):
        self.heard = []
        self.listener = Atspi.EventListener.new(self.hear)
        for kind in kinds:
            self.listener.register(kind)

    def hear(self, event):
        what = event.any_data if isinstance(event.any_data, (str, int, float)) else None
        self.heard.append((event.type, event.detail1, event.detail2, what))

    def expect(self, kind, *details):
        """Waits for such an event; what was heard until then is forgotten."""
        def found():
            return any(event[0].startswith(kind) and event[1:1 + len(details)] == details
                       for event in self.heard)
        try:
            until(found, f"{kind} {details} is heard", turn)
        except AssertionError as failure:
            raise AssertionError(f"{failure}; heard {self.heard}") from None
        self.heard.clear()


def turn():
    while GLib.MainContext.default().iteration(False):
        pass
    GLib.usleep(5000)


def string_at(view, offset, kind):
    found = view.get_text_at_offset(offset, kind)
    return found.content, found.start_offset, found.end_offset


def check_reading(view):
    equal(view.get_character_count(), len(TEXT), "number of characters")
    equal(view.get_text(0, -1), TEXT, "whole text")
    equal(view.get_text(6, 10), "line", "part of the text")
    equal(string_at(view, 7, LINE), ("First line here. Second sentence.\n", 0, 34), "line")
    equal(string_at(view, 34, LINE), ("\n", 34, 35), "empty line")
    equal(string_at(view, len(TEXT), LINE), ("last", 60, 64), "last line")
    equal(string_at(view, 7, WORD), ("line", 6, 10), "word")
    equal(string_at(view, 20, SENTENCE), ("Second sentence.\n", 17, 34), "sentence")
    attributes, start, end = view.get_text_attributes(0)[0:3]
    equal((start, end), (0, len(TEXT)), "stretch of one look")
    if "family-name" not in attributes or "fg-color" not in attributes:
        raise AssertionError(f"attributes: {attributes}")


def check_states(view):
    states = view.get_state_set()
    for state in ("EDITABLE", "MULTI_LINE", "FOCUSED", "SHOWING"):
        if not states.contains(getattr(Atspi.StateType, state)):
            raise AssertionError("state missing: " + state)


def check_places(view):
    screen = Atspi.CoordType.SCREEN
    first = view.get_character_extents(0, screen)
    for offset in (0, 8, 33, 40, 63):
        place = view.get_character_extents(offset, screen)
        if place.width <= 0 or place.height <= 0:
            raise AssertionError(f"extents of {offset}: {place.width} x {place.height}")
        middle = (place.x + place.width // 2, place.y + place.height // 2)
        equal(view.get_offset_at_point(*middle, screen), offset, "character at its own place")
    equal(view.get_character_extents(9, screen).x, view.get_range_extents(0, 8, screen).width +
          first.x, "nine characters side by side")
    below = view.get_character_extents(35, screen)
    equal((below.x, below.y), (first.x, first.y + 2 * first.height), "two lines further down")


def check_typing(view, desktop):
    ear = Ear("object:text-changed", "object:text-caret-moved", "object:text-selection-changed")
    desktop.keys("X")
    ear.expect("object:text-changed:insert", 0, 1, "X")
    equal(view.get_caret_offset(), 1, "caret")
    desktop.keys("BackSpace")
    ear.expect("object:text-changed:delete", 0, 1, "X")
    desktop.keys("Down")
    ear.expect("object:text-caret-moved", 34)
    desktop.keys("Home", "ctrl+Home", "shift+End")
    ear.expect("object:text-selection-changed")
    until(lambda: view.get_n_selections() == 1 and view.get_caret_offset() == 33, "it is selected")
    chosen = view.get_selection(0)
    equal((chosen.start_offset, chosen.end_offset), (0, 33), "selection")


def check_controlling(view):
    ear = Ear("object:text-changed", "object:text-caret-moved")
    view.set_caret_offset(34)
    ear.expect("object:text-caret-moved", 34)
    view.insert_text(34, "in\u00e4", 3)
    ear.expect("object:text-changed:insert", 34, 3, "in\u00e4")
    equal(view.get_text(33, 38), "\nin\u00e4\n", "inserted text")
    view.delete_text(34, 37)
    ear.expect("object:text-changed:delete", 34, 3, "in\u00e4")
    equal(view.get_text(0, -1), TEXT, "text as before")
    view.set_selection(0, 6, 10)
    view.add_selection(60, 64)
    equal(view.get_n_selections(), 2, "selections")
    view.remove_selection(0)
    chosen = view.get_selection(0)
    equal((chosen.start_offset, chosen.end_offset), (60, 64), "the one left")
    equal(view.get_current_value(), 4, "number of the caret's line")
    view.set_current_value(3)
    equal(view.get_caret_offset(), 35, "caret after the line was set")
    equal((view.get_minimum_value(), view.get_maximum_value()), (1, 4), "numbers of lines")


def check_message(desktop, program):
    """A message is an object that is announced, and its buttons have names."""
    desktop.edit(program, desktop.write("latin.txt", "caf\u00e9\n", "iso-8859-1"))
    view = until(lambda: find_text("latin.txt"), "the other text view is found")
    names = set()
    find(view.get_parent(), lambda object: names.add(object.get_name()))
    for field in ("Encoding: ", "Line breaks: ", "Language: ", "Line 1, Column 1"):
        if not any(name.startswith(field) for name in names):
            raise AssertionError(f"no {field!r} in {names}")
    shown = []
    def hear(event):
        if event.detail1 and event.source.get_role() == Atspi.Role.NOTIFICATION:
            shown.append(event.source.get_name())
    listener = Atspi.EventListener.new(hear)
    listener.register("object:state-changed:showing")
    view.insert_text(0, "\u65e5", 1)
    desktop.keys("ctrl+s")
    until(lambda: shown, "a message is announced", turn)
    if "latin.txt" not in shown[0]:
        raise AssertionError(f"announced: {shown}")


def main(program):
    with session.Session(QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1") as desktop:
        desktop.edit(program, desktop.write("read.txt", TEXT))
        Atspi.init()
        view = until(lambda: find_text("read.txt"), "the text view is found")
        check_reading(view)
        check_states(view)
        check_places(view)
        check_typing(view, desktop)
        check_controlling(view)
        check_message(desktop, program)


main(sys.argv[1])
