#!/usr/bin/python3
"""What a screen reader gets of the program "Tavlo Deck" over the desktop's accessibility bus.

Reads one command a line and answers in lines, the last of which is a single dot:

    tree              every node that shows: depth, role, name, description, states, value, bounds
    table NAME        column headers, then each row of that table, cells between tabs
    grid NAME         each cell as the keys of a screen reader find it: its place in the table, the
                      place that the table gives for its number, the one that it gives for the
                      number that the cell itself names, the header over it, its text, and the text
                      of the child with that number
    set NAME VALUE    moves the slider of that name
    press NAME        does what the button of that name does
    heard             what was told since the last time: event, role, name
    text NAME         what stands in the text box of that name
    typed             letters that came and went in text boxes since the last time

Fields stand between vertical bars.
"""
import sys
import threading

import warnings

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402

APPLICATION = "Tavlo Deck"
PATIENCE = 30000  # In milliseconds.
EVENTS = (
    "object:property-change:accessible-name",
    "object:property-change:accessible-value",
    "object:property-change:accessible-description",
    "object:state-changed:showing",
    "object:state-changed:focused",
    "object:text-changed:insert",
    "object:text-changed:delete",
)

warnings.simplefilter("ignore", DeprecationWarning)

heard = []
typed = []


def announce_screen_reader():
    """Sets the desktop's switch, as a screen reader does when it starts."""
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    bus.call_sync(
        "org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set",
        GLib.Variant("(ssv)", ("org.a11y.Status", "IsEnabled", GLib.Variant("b", True))),
        None, Gio.DBusCallFlags.NONE, 5000, None)


def program():
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        child = desktop.get_child_at_index(index)
        if child and child.get_name() == APPLICATION:
            return child
    return None


def shows(states):
    return states.contains(Atspi.StateType.SHOWING) and states.contains(Atspi.StateType.VISIBLE)


def walk(node, depth=0):
    """Every node that shows, with its depth and its states, each asked for once."""
    if node is None:
        return
    states = node.get_state_set()
    if depth > 0 and not shows(states):
        return
    yield node, depth, states
    # Cells are read by the table command; ten thousand of them are no part of the tree.
    if node.get_role() == Atspi.Role.TABLE:
        return
    for index in range(node.get_child_count()):
        yield from walk(node.get_child_at_index(index), depth + 1)


def plain(text):
    return (text or "").replace("|", "/").replace("\n", " ").replace("\t", " ")


def value_of(node):
    value = node.get_value_iface()
    if value is None:
        return "", "", ""
    return tuple(f"{number:g}" for number in (
        value.get_current_value(), value.get_minimum_value(), value.get_maximum_value()))


def describe(node, depth, states):
    names = [state for state in ("FOCUSABLE", "FOCUSED", "ENABLED", "CHECKED", "SELECTED", "ACTIVE",
                                 "IS_DEFAULT") if states.contains(getattr(Atspi.StateType, state))]
    return "|".join((str(depth), node.get_role_name(), plain(node.get_name()),
                     plain(node.get_description()), " ".join(names), *value_of(node)))


def tree():
    return [describe(*met) for met in walk(program())]


def find(name, wanted):
    for node, _, _ in walk(program()):
        if node.get_name() == name and wanted(node):
            return node
    return None


def table(name):
    node = find(name, lambda found: found.get_role() == Atspi.Role.TABLE)
    if node is None:
        return ["no table"]
    grid = node.get_table_iface()
    columns = range(grid.get_n_columns())
    lines = ["\t".join(plain(grid.get_column_header(c).get_name()) for c in columns)]
    for row in range(grid.get_n_rows()):
        cells = [grid.get_accessible_at(row, column) for column in columns]
        lines.append("\t".join(plain(cell.get_name()) for cell in cells))
    return lines


def grid(name):
    node = find(name, lambda found: found.get_role() == Atspi.Role.TABLE)
    if node is None:
        return ["no table"]
    cells = node.get_table_iface()
    lines = []
    for row in range(cells.get_n_rows()):
        for column in range(cells.get_n_columns()):
            met = cells.get_accessible_at(row, column)
            index = cells.get_index_at(row, column)
            places = [f"{cells.get_row_at_index(number)},{cells.get_column_at_index(number)}"
                      for number in (index, met.get_index_in_parent())]
            texts = [plain(part.get_name()) for part in (
                cells.get_column_header(column), met, node.get_child_at_index(index))]
            lines.append("|".join((f"{row},{column}", *places, *texts)))
    return lines


def set_value(name, number):
    node = find(name, lambda found: found.get_value_iface() is not None)
    if node is None:
        return ["no slider"]
    node.get_value_iface().set_current_value(float(number))
    return []


def press(name):
    node = find(name, lambda found: found.get_action_iface() is not None)
    if node is None:
        return ["no button"]
    node.get_action_iface().do_action(0)
    return []


def on_event(event):
    source = event.source
    if source is None:
        return
    try:
        if event.type.startswith("object:state-changed") and not event.detail1:
            return
        kind = event.type.removeprefix("object:")
        if kind.startswith("text-changed"):
            typed.append(plain(str(event.any_data)))
            return
        heard.append("|".join((kind, source.get_role_name(), plain(source.get_name()))))
    except GLib.Error:
        return


def take(told):
    lines = told[:]
    told.clear()
    return lines


def text(name):
    node = find(name, lambda found: found.get_text_iface() is not None)
    if node is None:
        return ["no text box"]
    box = node.get_text_iface()
    return [plain(Atspi.Text.get_text(box, 0, Atspi.Text.get_character_count(box)))]


def answer(line):
    command, _, rest = line.partition(" ")
    try:
        found = program()
        if found is not None:
            found.set_cache_mask(Atspi.Cache.NONE)
        if command == "tree":
            return tree()
        if command == "table":
            return table(rest)
        if command == "grid":
            return grid(rest)
        if command == "set":
            return set_value(*rest.rsplit(" ", 1))
        if command == "press":
            return press(rest)
        if command == "heard":
            return take(heard)
        if command == "text":
            return text(rest)
        if command == "typed":
            return take(typed)
    except GLib.Error as error:
        return [f"failed: {error.message}"]
    return ["unknown command"]


def reply(line):
    for answered in answer(line):
        print(answered)
    print(".", flush=True)
    return False


def read_commands():
    for line in sys.stdin:
        GLib.idle_add(reply, line.rstrip("\n"))
    GLib.idle_add(Atspi.event_quit)


def main():
    announce_screen_reader()
    Atspi.init()
    # The usual patience, less than a second, is too short on a busy machine.
    Atspi.set_timeout(PATIENCE, PATIENCE)
    listener = Atspi.EventListener.new(on_event)
    for event in EVENTS:
        listener.register(event)
    print("ready", flush=True)
    threading.Thread(target=read_commands, daemon=True).start()
    Atspi.event_main()


if __name__ == "__main__":
    main()
