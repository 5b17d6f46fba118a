#!/usr/bin/env python3
"""Validates `vetrix-check --usb-tree --format json` against the USB tree schema.

Usage: validate-usb-tree.py SCHEMA VETRIX_CHECK FIXTURE_DIR...

Every FIXTURE_DIR is a captured system root (a `sys` folder with the USB and
PCI devices). The report of each, and of a small odd tree made here (a
device without a speed, one whose descriptors file is shorter than the
device descriptor, an empty port), must be valid and name at least one
device. Then broken copies of a report must each be rejected, so a schema
that accepts anything fails the test. Exit status 0 when all holds.
"""
import copy
import json
import os
import subprocess
import sys
import tempfile

import jsonschema


def report(vetrix_check, root):
    env = dict(os.environ, VETRIX_SYSROOT=root)
    out = subprocess.run([vetrix_check, "--usb-tree", "--format", "json"], env=env,
                         stdout=subprocess.PIPE, check=True, timeout=120).stdout
    return json.loads(out)


def devices(node):
    """Every device object below a controller list, hub or port list."""
    found = []
    if isinstance(node, dict):
        if "portPath" in node and "descriptorRead" in node:
            found.append(node)
        for value in node.values():
            found += devices(value)
    elif isinstance(node, list):
        for value in node:
            found += devices(value)
    return found


def write(path, data):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as f:
        f.write(data)


def odd_tree(root):
    """One xHCI controller, usb1 with three ports: a device without speed,
    one with a 10-byte descriptors file, and nothing on port 3."""
    pci = os.path.join(root, "sys/devices/pci0000:00/0000:00:14.0")
    for name, value in (("class", b"0x0c0330\n"), ("vendor", b"0x8086\n"), ("device", b"0xa36d\n"),
                        ("subsystem_vendor", b"0x8086\n"), ("subsystem_device", b"0x7270\n"), ("revision", b"0x10\n")):
        write(os.path.join(pci, name), value)
    os.makedirs(os.path.join(root, "sys/bus/pci/devices"), exist_ok=True)
    os.symlink("../../../devices/pci0000:00/0000:00:14.0", os.path.join(root, "sys/bus/pci/devices/0000:00:14.0"))
    hub = os.path.join(pci, "usb1")
    write(os.path.join(hub, "descriptors"),
          bytes.fromhex("12010002090001406b1d020001010302010109021900010100e0000904000001090000000705810304000c"))
    for name, value in (("speed", b"480\n"), ("devnum", b"1\n"), ("maxchild", b"3\n"), ("bConfigurationValue", b"1\n")):
        write(os.path.join(hub, name), value)
    # A USB3 Vision camera (interface class 0xef, subclass 0x05): the device
    # descriptor, then a 25-byte configuration.
    camera = bytes.fromhex("120120030000000" "9b21adec000010102" "0001")
    camera += bytes.fromhex("09021900010100c032" "0904000001ef050000" "0705810200040a")
    for name, descriptors, speed in (("1-1", camera, None), ("1-2", camera[:10], b"480\n")):
        d = os.path.join(hub, name)
        write(os.path.join(d, "descriptors"), descriptors)
        write(os.path.join(d, "devnum"), b"2\n")
        write(os.path.join(d, "bConfigurationValue"), b"1\n")
        if speed:
            write(os.path.join(d, "speed"), speed)


def broken_copies(good):
    """Reports that must not pass, each with one fault."""
    faults = []
    r = copy.deepcopy(good)
    del r["schemaVersion"]
    faults.append(("no schemaVersion", r))
    r = copy.deepcopy(good)
    r["schemaVersion"] = 2
    faults.append(("unknown schemaVersion", r))
    r = copy.deepcopy(good)
    devices(r)[0]["speedMbps"] = "fast"
    faults.append(("speed as a word", r))
    r = copy.deepcopy(good)
    devices(r)[0]["vendorId"] = "1234"
    faults.append(("id without 0x", r))
    r = copy.deepcopy(good)
    del devices(r)[0]["interfaces"]
    faults.append(("no interfaces", r))
    r = copy.deepcopy(good)
    r["controllers"][0]["pciAddress"] = "00:14.0"
    faults.append(("short PCI address", r))
    r = copy.deepcopy(good)
    r["controllers"][0]["rootHubs"][0]["ports"][0]["status"] = "Fine"
    faults.append(("unknown port status", r))
    return faults


def main(argv):
    if len(argv) < 4:
        print(__doc__, file=sys.stderr)
        return 2
    with open(argv[1], encoding="utf-8") as f:
        schema = json.load(f)
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    failures = 0
    reports = []
    with tempfile.TemporaryDirectory() as odd:
        odd_tree(odd)
        for root in argv[3:] + [odd]:
            r = report(argv[2], root)
            errors = sorted(validator.iter_errors(r), key=lambda e: list(e.path))
            found = devices(r)
            for e in errors:
                print(f"{root}: {'/'.join(map(str, e.path))}: {e.message}")
            if not found:
                print(f"{root}: no device in the report")
            failures += len(errors) + (0 if found else 1)
            reports.append((root, r))
        odd_devices = {d["portPath"]: d for d in devices(reports[-1][1])}
        if odd_devices.get("1-1", {}).get("speedMbps", 0) is not None:
            print("odd tree: the device without a speed should have speedMbps null")
            failures += 1
        if odd_devices.get("1-2", {}).get("descriptorRead", True) is not False:
            print("odd tree: the device with a short descriptors file should have descriptorRead false")
            failures += 1
    for name, broken in broken_copies(reports[0][1]):
        if validator.is_valid(broken):
            print(f"broken report accepted: {name}")
            failures += 1
    print(f"{len(reports)} reports checked, {failures} problems")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
