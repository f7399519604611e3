"""The C interfaces: view.h (reading) and tallowmere.h (writing)."""

import ctypes
from ctypes import POINTER, c_char, c_char_p, c_double, c_int, c_int16, c_int32, c_int64
from ctypes import c_uint8, c_uint16, c_uint32, c_uint64, c_void_p

from . import _library

CHANNELS = 414
BOATS = 100
NO_VALUE = 32767.0
NO_CHANNEL = 32767
NO_TIME = 2**63 - 1
NO_PRECISION = 255
NAME_BYTES = 15
USER_CHANNELS = 32


class Value(ctypes.Structure):
    _fields_ = [
        ("value", c_double),
        ("age_seconds", c_double),
        ("stamp", c_int64),
        ("record_header", c_uint64),
        ("record_payload", c_uint64),
        ("channel", c_uint16),
        ("source", c_uint16),
        ("state", c_uint8),
        ("changed", c_uint8),
        ("reserved", c_uint8 * 2),
    ]


class Group(ctypes.Structure):
    _fields_ = [
        ("moment", c_int64),
        ("oldest_stamp", c_int64),
        ("newest_stamp", c_int64),
        ("tries", c_uint32),
        ("values", c_uint32),
        ("section_generation", c_uint32),
        ("quiet", c_uint32),
    ]


class Channel(ctypes.Structure):
    _fields_ = [
        ("channel", c_uint16),
        ("unit_class", c_int16),
        ("timeout_seconds", c_uint16),
        ("precision", c_uint16),
        ("min_value", c_int16),
        ("max_value", c_int16),
        ("storage_kind", c_uint8),
        ("other_boats", c_uint8),
        ("own_boat_protected", c_uint8),
        ("sensor", c_uint8),
        ("log", c_uint8),
        ("written", c_uint8),
        ("blocked", c_uint8),
        ("reserved", c_uint8 * 5),
        ("short_name", c_char * 48),
        ("long_name", c_char * 96),
        ("unit", c_char * 16),
    ]


class Boat(ctypes.Structure):
    _fields_ = [
        ("boat", c_uint16),
        ("in_use", c_uint8),
        ("has_data", c_uint8),
        ("mmsi", c_uint32),
        ("colour", c_uint32),
        ("reserved", c_uint32),
        ("name", c_char * 96),
    ]


class Mob(ctypes.Structure):
    _fields_ = [
        ("latitude", c_double),
        ("longitude", c_double),
        ("flag_a", c_uint8),
        ("flag_b", c_uint8),
        ("reserved", c_uint8 * 6),
        ("name", c_char * 32),
    ]


_VIEW_FUNCTIONS = {
    "tlm_view_interface": (c_int32, []),
    "tlm_view_open": (c_void_p, []),
    "tlm_view_close": (None, [c_void_p]),
    "tlm_view_refresh": (c_int32, [c_void_p]),
    "tlm_view_refresh_now": (c_int32, [c_void_p]),
    "tlm_view_generation": (c_uint32, [c_void_p]),
    "tlm_view_is_replay": (c_int32, [c_void_p]),
    "tlm_view_get_channel": (c_int32, [c_void_p, c_uint16, POINTER(Channel)]),
    "tlm_view_find_channel": (c_uint16, [c_void_p, c_char_p]),
    "tlm_view_source": (c_uint16, [c_void_p, c_uint16]),
    "tlm_view_boat_count": (c_uint16, [c_void_p]),
    "tlm_view_get_boat": (c_int32, [c_void_p, c_uint16, POINTER(Boat)]),
    "tlm_view_find_boat": (c_int32, [c_void_p, c_char_p]),
    "tlm_view_read": (c_int32, [c_void_p, c_uint16, c_uint16, POINTER(Value)]),
    "tlm_view_read_group": (
        c_int32,
        [c_void_p, c_uint16, POINTER(c_uint16), c_uint32, POINTER(Value), POINTER(Group)],
    ),
    "tlm_view_get_variable": (c_int32, [c_void_p, c_uint16, POINTER(c_double)]),
    "tlm_view_get_integer": (c_int32, [c_void_p, c_uint16, POINTER(c_int32)]),
    "tlm_view_get_flag": (c_int32, [c_void_p, c_uint16, POINTER(c_uint8)]),
    "tlm_view_get_mob": (c_int32, [c_void_p, POINTER(Mob)]),
}

_CLIENT_FUNCTIONS = {
    "SetZanVar": (c_uint8, [c_uint16, c_double, c_uint16]),
    "SetZanUserVarName": (None, [c_uint16, c_char_p]),
    "SetMOB": (c_int, [c_double, c_double]),
}


def _prepare_view(library: ctypes.CDLL) -> None:
    for name, (result, arguments) in _VIEW_FUNCTIONS.items():
        function = getattr(library, name)
        function.restype, function.argtypes = result, arguments


def _prepare_client(library: ctypes.CDLL) -> None:
    for name, (result, arguments) in _CLIENT_FUNCTIONS.items():
        function = getattr(library, name)
        function.restype, function.argtypes = result, arguments


def view_library() -> ctypes.CDLL:
    """Reading: makes no section and takes no part in its life."""
    return _library.load("tallowmere_view", _prepare_view)


def client_library() -> ctypes.CDLL:
    """Writing: loading it joins the section, or makes it, until the process ends."""
    return _library.load("tallowmere", _prepare_client)
