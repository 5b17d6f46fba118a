#!/usr/bin/env python3
"""Writes a folder tree (a captured or made-up system root) as a seed for
the fuzz targets that build trees on disk (fuzztree.h): one line per
folder, file and link, with the files the USB reader reads.

  tests/usb/fuzz/tree-seed.py ROOT > seed
"""
import os
import sys

# The files the USB reader and the driver facts read; others are left out
# so the seed stays small.
READ = {
    'class', 'vendor', 'device', 'subsystem_vendor', 'subsystem_device', 'revision',
    'descriptors', 'bConfigurationValue', 'speed', 'devnum', 'maxchild', 'manufacturer',
    'product', 'serial', 'configuration', 'interface', 'bAlternateSetting', 'wakeup',
    'osrelease', 'version',
}


def escape(data):
    out = []
    for b in data:
        c = chr(b)
        if c == '\\':
            out.append('\\\\')
        elif c == '\n':
            out.append('\\n')
        elif 0x20 <= b < 0x7f:
            out.append(c)
        else:
            out.append('\\x%02x' % b)
    return ''.join(out)


def main():
    root = sys.argv[1].rstrip('/')
    lines = []
    for folder, dirs, files in os.walk(root):
        dirs.sort()
        rel = folder[len(root):] or '/'
        entries = sorted(dirs + files)
        if not entries and rel != '/':
            lines.append('d %s' % rel)
        for name in entries:
            path = os.path.join(folder, name)
            relpath = os.path.join(rel, name)
            if os.path.islink(path):
                # The reader follows only the root hubs' links of the USB bus.
                if rel == '/sys/bus/usb/devices' and not name.startswith('usb'):
                    continue
                lines.append('l %s %s' % (relpath, escape(os.readlink(path).encode())))
            elif os.path.isfile(path) and name in READ:
                with open(path, 'rb') as f:
                    lines.append('f %s %s' % (relpath, escape(f.read(70000))))
    sys.stdout.write('\n'.join(lines) + '\n')


if __name__ == '__main__':
    main()
