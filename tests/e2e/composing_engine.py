#!/usr/bin/python3
"""An input method for the tests, run by ibus: composing_engine.py JOURNAL

Letters are composed; space commits them in capitals, Return as they are, Escape gives them up, and
BackSpace takes the last one back. F8 puts "<" and ">" around the character before the caret, which
it learns from the surrounding text. The journal gets a line of JSON for each thing it is told.
"""

import json
import sys

import gi

gi.require_version("IBus", "1.0")
from gi.repository import GLib, IBus

NAME = "quillory-test"


class ComposingEngine(IBus.Engine):
    def __init__(self, **properties):
        super().__init__(**properties)
        self.composed = ""

    def do_focus_in(self):
        self.get_surrounding_text()  # from now on it wants to be told

    def do_process_key_event(self, key, _code, state):
        if state & (IBus.ModifierType.RELEASE_MASK | IBus.ModifierType.CONTROL_MASK):
            return False
        if key == IBus.KEY_F8:
            self.enclose()
            return True
        if ord("a") <= key <= ord("z"):
            self.compose(self.composed + chr(key))
            return True
        if not self.composed:
            return False
        endings = {IBus.KEY_space: self.composed.upper(), IBus.KEY_Return: self.composed,
                   IBus.KEY_Escape: ""}
        if key in endings:
            self.compose("")
            if endings[key]:
                self.commit_text(IBus.Text.new_from_string(endings[key]))
        elif key == IBus.KEY_BackSpace:
            self.compose(self.composed[:-1])
        return True

    def enclose(self):
        text, caret, _anchor = self.get_surrounding_text()
        before = text.get_text()[:caret]
        tell(surrounding=text.get_text(), caret=caret)
        if before:
            self.delete_surrounding_text(-1, 1)
            self.commit_text(IBus.Text.new_from_string(f"<{before[-1]}>"))

    def compose(self, composed):
        self.composed = composed
        text = IBus.Text.new_from_string(composed)
        text.append_attribute(IBus.AttrType.UNDERLINE, IBus.AttrUnderline.SINGLE, 0, len(composed))
        text.append_attribute(IBus.AttrType.BACKGROUND, 0xffd000, 0, 1)
        self.update_preedit_text(text, len(composed), bool(composed))

    def do_set_cursor_location(self, x, y, width, height):
        tell(caret_at=[x, y, width, height])

    def do_reset(self):
        self.composed = ""
        tell(reset=True)


def tell(**what):
    print(json.dumps(what), file=JOURNAL, flush=True)


def main():
    IBus.init()
    bus = IBus.Bus()
    factory = IBus.Factory.new(bus.get_connection())
    factory.add_engine(NAME, ComposingEngine.__gtype__)
    component = IBus.Component.new("org.example.QuilloryTest", "Composes for the tests", "1", "MIT",
                                   "", "", "", "")
    component.add_engine(IBus.EngineDesc.new(NAME, NAME, "", "en", "MIT", "", "", "us"))
    bus.register_component(component)
    # The bus asks for the engine while it answers, so the answer cannot be waited for.
    bus.set_global_engine_async(NAME, -1, None,
                                lambda _, answer: tell(ready=bus.set_global_engine_async_finish(answer)))
    GLib.MainLoop().run()


JOURNAL = open(sys.argv[1], "a", encoding="utf-8")
main()
