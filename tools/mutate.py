#!/usr/bin/env python3
"""Mutation check of the test suite.

Applies each deliberate fault below to src/ on its own, rebuilds the plain
build, runs the whole suite (GoogleTest programs and lit cases), records
which tests failed, and puts the source back. A fault that no test catches
is a gap in the suite. Not part of tools/test.sh; it rebuilds once per
fault, so run it niced when the machine is quiet:

    nice tools/mutate.py [--build build-mutate] [--only NAME...]

Exit status 1 when a fault was not caught or did not build.
"""
import argparse
import os
import re
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
LIT = '/usr/lib/llvm-14/build/utils/lit/lit.py'

# name, file under src/, text to replace (must occur exactly once), replacement
FAULTS = [
    # reader and packet header
    ('resync step 8', 'stream/reader.cpp',
     'if (!isPacketSignature(value)) {\n            state.remaining -= 4;',
     'if (!isPacketSignature(value)) {\n            file.in.seek(file.in.tell() + 4);\n            state.remaining -= 4;'),
    ('blank header limit one lower', 'stream/reader.cpp',
     'if (++blankHeaders <= kBlankHeaderLimit - 1) continue;', 'if (++blankHeaders < kBlankHeaderLimit - 1) continue;'),
    ('packet size limit off by one', 'stream/reader.cpp', 'if (size > kPacketSizeLimit) {', 'if (size >= kPacketSizeLimit) {'),
    ('transport-layer types up to 8', 'stream/header.cpp', 'tlType <= 7', 'tlType <= 8'),
    ('dropped count off by one', 'stream/ordinal.cpp',
     'file.packetsDropped += ordinal - file.lastOrdinal - 1;', 'file.packetsDropped += ordinal - file.lastOrdinal;'),
    # output layer
    ('client api range for OpenGL cut', 'json/envelope.cpp', '{160, 176, "OpenGL"}', '{160, 175, "OpenGL"}'),
    ('hex dump gap after the third byte', 'json/envelope.cpp', "if (i % 4 == 3) *at++ = ' ';", "if (i % 4 == 2) *at++ = ' ';"),
    ('hex digits of the output layer upper case', 'json/format_writer.h',
     'const char* set = upper ? "0123456789ABCDEF" : "0123456789abcdef";',
     'const char* set = upper ? "0123456789ABCDEF" : "0123456789ABCDEF";'),
    ('document closing without its line feed', 'json/document.cpp', 'file.out.write("\\n  ]\\n}");', 'file.out.write("  ]\\n}");'),
    # firmware
    ('pairing slot of TA resume swapped', 'fw/fw_correlated_hardware.cpp',
     'case 0x08: case 0x19: return {HardwareRole::Begin, 2};', 'case 0x08: return {HardwareRole::Begin, 2};\n    case 0x19: return {HardwareRole::Begin, 3};'),
    ('surname of SPM kick lost', 'fw/fw_correlated_hardware.cpp',
     'if (beginType == kFwHw3dSpmKick) return "SPM";', 'if (beginType == kFwHw3dSpmKick) return "";'),
    ('data master name table shifted', 'fw/fw_names.cpp',
     '"GP", "2D", "TA", "3D", "CDM", "RTU", "SHG", "TDM", "LAST",', '"2D", "TA", "3D", "CDM", "RTU", "SHG", "TDM", "LAST", "LAST",'),
    ('section key misspelt', 'fw/fw_raw_objects.cpp', '\\"firmwareperfcount0\\"', '\\"firmwareperfcnt0\\"'),
    ('counter block limit 61', 'fw/counter_blocks.cpp', 'constexpr std::uint32_t kMaxBlocks = 60;', 'constexpr std::uint32_t kMaxBlocks = 61;'),
    ('timer overflow test inverted', 'fw/timer_check.cpp',
     'if ((previous & kTopBit) && !(timer & kTopBit))', 'if ((previous & kTopBit) && (timer & kTopBit))'),
    ('UFO fixed part one word shorter', 'fw/ufo_list.cpp',
     'std::int64_t room = static_cast<std::int64_t>(packetSize) - kUfoFixedBytes;',
     'std::int64_t room = static_cast<std::int64_t>(packetSize) - kUfoFixedBytes + 4;'),
    ('counter ids registered under the full block id', 'fw/counter_registration.cpp',
     'table.set(id & 0x7FFF, j, counterId);', 'table.set(id, j, counterId);'),
    ('frequency-scaling pairs share one slot', 'fw/fw_correlated_dvfs.cpp',
     'fwOpenEvents().frequencyScaling[beginSubEvent / 2]', 'fwOpenEvents().frequencyScaling[0]'),
    # host
    ('enqueue fence keys from 40 bytes', 'host/host_records.cpp', 'if (size > 40) {', 'if (size >= 40) {'),
    ('clock sync OS timestamp read at 40', 'host/host_records.cpp',
     '"        \\"ostimestamp\\": %lu\\n", static_cast<unsigned long>(p.u64(32)));',
     '"        \\"ostimestamp\\": %lu\\n", static_cast<unsigned long>(p.u64(40)));'),
    ('host alloc key misspelt', 'host/host_raw.cpp',
     'out.print("      \\"hostalloc\\": {\\n        \\"Type:\\": \\"%s\\",\\n"',
     'out.print("      \\"hostalloc\\": {\\n        \\"Type\\": \\"%s\\",\\n"'),
    # client
    ('OpenCL pairing slot read at 40', 'client/client_correlated.cpp',
     'case kOpenClMarkStart: return pendingSlot(p.u32(44));', 'case kOpenClMarkStart: return pendingSlot(p.u32(40));'),
    ('GL begins not stored for OpenGL', 'client/client_correlated.cpp',
     'if (type > kGlesBase) return pendingSlot(p.u32(24));', 'if (type < kGlBase) return pendingSlot(p.u32(24));'),
    ('invocation separator rule flipped', 'client/client_raw.cpp',
     'const char* separator = i + 1 < count ? "," : "";', 'const char* separator = i + 1 <= count ? "," : "";'),
    ('host fence-wait end type misspelt', 'host/host_correlated.cpp',
     '"        \\"Type\\": \\"end\\",', '"        \\"Type\\": \\"End\\",'),
    ('GL TQ kicks share the GLES slot', 'client/client_correlated.cpp',
     'return pendingSlot(kGlTqKickSlot);', 'return pendingSlot(kGlesTqKickSlot);'),
    # client API payloads
    ('Vulkan render area height read at 72', 'client/api/vulkan_api_info.cpp',
     'r.i32(64), r.i32(68));\n    printReference(out, r, 72);', 'r.i32(64), r.i32(72));\n    printReference(out, r, 72);'),
    ('OpenCL command queue properties read at 4', 'client/api/opencl_api_info.cpp',
     'static_cast<unsigned long>(data.u64(8)));', 'static_cast<unsigned long>(data.u64(4)));'),
    ('framebuffer flag bits swapped', 'client/api/gl_render_targets.cpp',
     'text.append("        \\"ZOnly\\": \\"%s\\",\\n", yesNo(flags, 2));',
     'text.append("        \\"ZOnly\\": \\"%s\\",\\n", yesNo(flags, 1));'),
    ('render target type decision reordered', 'client/api/gl_render_targets.cpp',
     'if (type == 5) return openGl ? "Accumulate" : "Accum";', 'if (type == 5) return openGl ? "Accum" : "Accumulate";'),
]


def run(command, **options):
    return subprocess.run(command, cwd=ROOT, text=True, capture_output=True, **options)


def build(build_dir):
    result = run(['cmake', '--build', build_dir, '-j2'])
    return result.returncode == 0, result.stdout + result.stderr


def failing_tests(build_dir):
    """Names of the failing GoogleTest cases and lit cases."""
    # The package and browser tests depend on the machine's packaging and
    # browser set-up, not on the converters; lit runs on its own below.
    ctest = run(['ctest', '--test-dir', build_dir, '-j2', '-E', '^(lit|debian_package|trace_browser)$'])
    failed_part = ctest.stdout.partition('The following tests FAILED:')[2]
    failed = re.findall(r'^\s*\d+ - (\S+) \((?!Skipped)', failed_part, re.M)
    lit = run(['python3', LIT, '-q', os.path.join(build_dir, 'tests', 'lit')])
    failed += ['lit:' + name for name in re.findall(r'^\s*zyntelbin2json :: (\S+)$', lit.stdout, re.M)]
    return failed


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument('--build', default='build-mutate', help='build folder (configured if missing)')
    parser.add_argument('--only', nargs='*', help='names of the faults to apply')
    args = parser.parse_args()
    faults = [f for f in FAULTS if not args.only or f[0] in args.only]

    for name, path, old, _ in faults:
        text = open(os.path.join(ROOT, 'src', path)).read()
        if text.count(old) != 1:
            sys.exit(f'fault "{name}": the text to replace occurs {text.count(old)} times in src/{path}')

    if not os.path.isdir(os.path.join(ROOT, args.build)):
        run(['cmake', '-S', '.', '-B', args.build, '-DCMAKE_BUILD_TYPE=RelWithDebInfo'], check=True)
    ok, log = build(args.build)
    if not ok or failing_tests(args.build):
        sys.exit('the suite must build and pass before faults are applied\n' + log[-2000:])

    missed = 0
    print('| fault | file | caught by |\n|---|---|---|')
    for name, path, old, new in faults:
        source = os.path.join(ROOT, 'src', path)
        original = open(source).read()
        try:
            open(source, 'w').write(original.replace(old, new))
            ok, log = build(args.build)
            caught = failing_tests(args.build) if ok else ['(does not build)']
        finally:
            open(source, 'w').write(original)
        if not caught or not ok:
            missed += 1
        print(f'| {name} | src/{path} | {", ".join(caught) if caught else "NOT CAUGHT"} |', flush=True)
    build(args.build)
    sys.exit(1 if missed else 0)


if __name__ == '__main__':
    main()
