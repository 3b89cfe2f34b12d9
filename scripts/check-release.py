#!/usr/bin/env python3
"""Checks what scripts/release.sh made, file by file, before anyone installs it.

Usage: scripts/check-release.py OUTDIR VERSION

The time every member carries must be the commit's, which the source tarball
tells (git archive stamps each member with it). The executables are read
from their headers: machine, static, stripped; vexa.exe also for its imports
and its version resource. Prints one line per failed check; exit 1 if any.
"""

import gzip
import hashlib
import io
import struct
import subprocess
import sys
import tarfile
import time
import zipfile
from pathlib import Path

# Executables: the ELF machine of each Debian architecture.
ELF_MACHINE = {"amd64": 62, "arm64": 183}
# The only DLLs vexa.exe may import: parts of every Windows since 7.
SYSTEM_DLLS = {"kernel32.dll", "msvcrt.dll", "ws2_32.dll", "version.dll", "advapi32.dll", "user32.dll"}
# path in the Debian package -> mode
DEB_FILES = {
    "./usr/bin/vexa": 0o755,
    "./usr/share/man/man1/vexa.1.gz": 0o644,
    "./usr/share/bash-completion/completions/vexa": 0o644,
    "./usr/share/doc/vexa/README.md": 0o644,
    "./usr/share/doc/vexa/copyright": 0o644,
    "./usr/share/doc/vexa/changelog.gz": 0o644,
    "./usr/share/lintian/overrides/vexa": 0o644,
}
ZIP_MEMBERS = [("vexa.exe", 0o755), ("README.txt", 0o644), ("LICENSE", 0o644)]


class Report:
    def __init__(self):
        self.failures = []

    def check(self, ok, what):
        if not ok:
            self.failures.append(what)
        return ok


def gzip_is_bare(data):
    """gzip -n: no file name and no time in the header."""
    flags, mtime = data[3], struct.unpack_from("<I", data, 4)[0]
    return data[:2] == b"\x1f\x8b" and not flags & 0x08 and mtime == 0


# --- ELF ----------------------------------------------------------------------


def elf_facts(data):
    """machine, has PT_INTERP, section names."""
    if data[:4] != b"\x7fELF" or data[4] != 2 or data[5] != 1:
        return None
    machine = struct.unpack_from("<H", data, 18)[0]
    phoff, shoff = struct.unpack_from("<QQ", data, 32)
    phentsize, phnum, shentsize, shnum, shstrndx = struct.unpack_from("<HHHHH", data, 54)
    interp = any(struct.unpack_from("<I", data, phoff + i * phentsize)[0] == 3 for i in range(phnum))
    names = []
    if shnum:
        strtab_off = struct.unpack_from("<Q", data, shoff + shstrndx * shentsize + 24)[0]
        for i in range(shnum):
            name_off = struct.unpack_from("<I", data, shoff + i * shentsize)[0]
            start = strtab_off + name_off
            names.append(data[start : data.index(b"\0", start)].decode())
    return machine, interp, names


def check_elf(report, where, data, arch):
    facts = elf_facts(data)
    if not report.check(facts is not None, f"{where}: not a 64-bit little-endian ELF file"):
        return
    machine, interp, sections = facts
    report.check(machine == ELF_MACHINE[arch], f"{where}: ELF machine {machine}, {arch} is {ELF_MACHINE[arch]}")
    report.check(not interp, f"{where}: has a program interpreter (not static)")
    bad = [s for s in sections if s == ".symtab" or s.startswith(".debug")]
    report.check(not bad, f"{where}: not stripped: {bad}")


# --- PE -----------------------------------------------------------------------


class Pe:
    def __init__(self, data):
        self.data = data
        pe = struct.unpack_from("<I", data, 0x3C)[0]
        if data[:2] != b"MZ" or data[pe : pe + 4] != b"PE\0\0":
            raise ValueError("not a PE file")
        (self.machine, count, self.timestamp, self.symbols, _, opt_size, _) = struct.unpack_from("<HHIIIHH", data, pe + 4)
        opt = pe + 24
        if struct.unpack_from("<H", data, opt)[0] != 0x20B:
            raise ValueError("not PE32+")
        self.directories = [struct.unpack_from("<II", data, opt + 112 + 8 * i) for i in range(16)]
        self.sections = []
        for i in range(count):
            at = opt + opt_size + 40 * i
            name = data[at : at + 8].rstrip(b"\0").decode()
            vsize, vaddr, raw_size, raw_at = struct.unpack_from("<IIII", data, at + 8)
            self.sections.append((name, vaddr, max(vsize, raw_size), raw_at))

    def offset(self, rva):
        for _, vaddr, size, raw_at in self.sections:
            if vaddr <= rva < vaddr + size:
                return raw_at + rva - vaddr
        raise ValueError(f"RVA {rva:#x} in no section")

    def text(self, rva):
        at = self.offset(rva)
        return self.data[at : self.data.index(b"\0", at)].decode()

    def imports(self):
        rva, _ = self.directories[1]
        names = []
        at = self.offset(rva)
        while True:
            name_rva = struct.unpack_from("<I", self.data, at + 12)[0]
            if name_rva == 0:
                return names
            names.append(self.text(name_rva))
            at += 20

    def version_info(self):
        """The VS_VERSIONINFO tree: (fixed numbers, {key: value} of its strings)."""
        rva, size = self.directories[2]
        rsrc = self.data[self.offset(rva) : self.offset(rva) + size]
        key = "VS_VERSION_INFO".encode("utf-16-le") + b"\0\0"
        start = rsrc.find(key) - 6
        if start < 0:
            return None
        fixed, strings = None, {}

        def node(at):
            nonlocal fixed
            length, value_length, kind = struct.unpack_from("<HHH", rsrc, at)
            end = at + length
            name_end = at + 6
            while rsrc[name_end : name_end + 2] != b"\0\0":
                name_end += 2
            name = rsrc[at + 6 : name_end].decode("utf-16-le")
            value_at = (name_end + 2 + 3) & ~3
            value_bytes = value_length * 2 if kind == 1 else value_length
            value = rsrc[value_at : value_at + value_bytes]
            if name == "VS_VERSION_INFO" and struct.unpack_from("<I", value, 0)[0] == 0xFEEF04BD:
                fixed = struct.unpack_from("<IIII", value, 8)
            elif kind == 1 and value_length:
                strings[name] = value.decode("utf-16-le").rstrip("\0")
            child = (value_at + value_bytes + 3) & ~3
            while child < end:
                child = (node(child) + 3) & ~3
            return end

        node(start)
        return fixed, strings


def check_exe(report, data, version, copyright_line):
    try:
        pe = Pe(data)
        imports = pe.imports()
        info = pe.version_info()
    except (ValueError, struct.error, IndexError) as error:
        report.check(False, f"vexa.exe: {error}")
        return
    report.check(pe.machine == 0x8664, f"vexa.exe: machine {pe.machine:#x}, not x86-64")
    report.check(pe.timestamp == 0, f"vexa.exe: time stamp {pe.timestamp} in the header")
    debug = [name for name, *_ in pe.sections if name.startswith((".debug", "/"))]
    report.check(not debug and pe.symbols == 0, f"vexa.exe: not stripped: sections {debug}")
    foreign = [dll for dll in imports if dll.lower() not in SYSTEM_DLLS]
    report.check(not foreign, f"vexa.exe: imports DLLs that are not the system's: {foreign}")
    if not report.check(info is not None and info[0] is not None, "vexa.exe: no version resource"):
        return
    fixed, strings = info
    numbers = ([int(n) for n in version.split(".")] + [0, 0, 0])[:4]
    packed = (numbers[0] << 16 | numbers[1], numbers[2] << 16 | numbers[3])
    report.check(fixed[0:2] == packed, f"vexa.exe: FILEVERSION {fixed[0:2]}, want {numbers}")
    report.check(fixed[2:4] == packed, f"vexa.exe: PRODUCTVERSION {fixed[2:4]}, want {numbers}")
    holder = copyright_line.split(" ", 3)[3]
    want = {
        "CompanyName": holder,
        "ProductName": "vexa",
        "FileVersion": version,
        "ProductVersion": version,
        "OriginalFilename": "vexa.exe",
        "InternalName": "vexa",
        "LegalCopyright": copyright_line,
    }
    for key, value in want.items():
        report.check(strings.get(key) == value, f"vexa.exe: version resource {key} is {strings.get(key)!r}, want {value!r}")
    description = strings.get("FileDescription", "")
    report.check(0 < len(description) <= 80 and "\n" not in description, f"vexa.exe: FileDescription {description!r}")


# --- the files ----------------------------------------------------------------


def check_tarball(report, path, version):
    """The commit's time, which every other member must carry too."""
    data = path.read_bytes()
    report.check(gzip_is_bare(data), f"{path.name}: gzip header holds a name or a time")
    with tarfile.open(fileobj=io.BytesIO(gzip.decompress(data))) as tar:
        members = tar.getmembers()
    prefix = f"vexa-{version}/"
    outside = [m.name for m in members if not (m.name + "/").startswith(prefix)]
    report.check(not outside, f"{path.name}: members outside {prefix}: {outside[:5]}")
    names = {m.name for m in members}
    for needed in ("CMakeLists.txt", "LICENSE", "README.md", "scripts/release.sh"):
        report.check(prefix + needed in names, f"{path.name}: no {prefix}{needed}")
    times = {m.mtime for m in members}
    report.check(len(times) == 1, f"{path.name}: members of {len(times)} different times")
    return min(times) if times else None


def check_deb(report, path, arch, version, epoch, license_text):
    def field(name):
        return subprocess.run(["dpkg-deb", "-f", path, name], capture_output=True, text=True).stdout.strip()

    for name, want in (("Package", "vexa"), ("Version", version), ("Architecture", arch)):
        report.check(field(name) == want, f"{path.name}: {name} is {field(name)!r}, want {want!r}")
    tar_bytes = subprocess.run(["dpkg-deb", "--fsys-tarfile", path], capture_output=True, check=True).stdout
    files = {}
    with tarfile.open(fileobj=io.BytesIO(tar_bytes)) as tar:
        for member in tar.getmembers():
            where = f"{path.name}: {member.name}"
            report.check((member.uid, member.gid, member.uname, member.gname) == (0, 0, "root", "root"),
                         f"{where}: owner {member.uname}:{member.gname} ({member.uid}:{member.gid})")
            report.check(member.mtime == epoch, f"{where}: time {member.mtime}, the commit's is {epoch}")
            if member.isdir():
                report.check(member.mode == 0o755, f"{where}: directory mode {member.mode:o}")
            elif member.isfile():
                files[member.name] = (member.mode, tar.extractfile(member).read())
            else:
                report.check(False, f"{where}: neither file nor directory")
    report.check(set(files) == set(DEB_FILES), f"{path.name}: files {sorted(set(files) ^ set(DEB_FILES))} differ")
    for name, mode in DEB_FILES.items():
        if name in files:
            report.check(files[name][0] == mode, f"{path.name}: {name} mode {files[name][0]:o}, want {mode:o}")
    if "./usr/bin/vexa" in files:
        check_elf(report, f"{path.name}: usr/bin/vexa", files["./usr/bin/vexa"][1], arch)
    for name in ("./usr/share/man/man1/vexa.1.gz", "./usr/share/doc/vexa/changelog.gz"):
        if name in files:
            report.check(gzip_is_bare(files[name][1]), f"{path.name}: {name}: gzip header holds a name or a time")
    if "./usr/share/doc/vexa/changelog.gz" in files:
        changelog = gzip.decompress(files["./usr/share/doc/vexa/changelog.gz"][1]).decode()
        report.check(changelog.startswith(f"vexa ({version}) "), f"{path.name}: changelog begins {changelog[:30]!r}")
    if "./usr/share/doc/vexa/copyright" in files:
        copyright_text = files["./usr/share/doc/vexa/copyright"][1].decode()
        report.check(copyright_text.startswith("Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/\n"),
                     f"{path.name}: copyright is not in the machine-readable format")
        # The license as DEP-5 indents it: the words must all be there, in order.
        words = lambda text: " ".join(w for w in text.split() if w != ".")
        report.check(words(license_text.split("Permission", 1)[1]) in words(copyright_text),
                     f"{path.name}: copyright lacks the text of LICENSE")


def check_zip(report, path, version, epoch, license_text):
    with zipfile.ZipFile(path) as archive:
        infos = archive.infolist()
        report.check([(i.filename, i.external_attr >> 16 & 0o777) for i in infos] == ZIP_MEMBERS,
                     f"{path.name}: members {[(i.filename, oct(i.external_attr >> 16)) for i in infos]}")
        # Zip keeps the time of day without a zone, seconds in twos, nothing before 1980.
        when = time.gmtime(max(epoch, 315532800))[:6]
        stamp = (*when[:5], when[5] // 2 * 2)
        for info in infos:
            report.check(info.date_time == stamp, f"{path.name}: {info.filename} dated {info.date_time}, want {stamp}")
        contents = {i.filename: archive.read(i) for i in infos}
    for name in ("README.txt", "LICENSE"):
        text = contents.get(name, b"")
        report.check(text and text.count(b"\n") == text.count(b"\r\n"), f"{path.name}: {name} lines do not all end in CR LF")
    report.check(contents.get("LICENSE", b"").replace(b"\r\n", b"\n") == license_text.encode(),
                 f"{path.name}: LICENSE is not the one of the sources")
    if "vexa.exe" in contents:
        copyright_line = next(l for l in license_text.splitlines() if l.startswith("Copyright "))
        check_exe(report, contents["vexa.exe"], version, copyright_line)


def main():
    out, version = Path(sys.argv[1]), sys.argv[2]
    report = Report()
    names = [f"vexa_{version}_amd64.deb", f"vexa_{version}_arm64.deb", f"vexa-{version}-win64.zip", f"vexa-{version}.tar.gz"]
    missing = [n for n in names + ["SHA256SUMS"] if not (out / n).is_file()]
    if missing:
        print(f"check-release: missing in {out}: {missing}")
        return 1
    sums = [line.split("  ", 1) for line in (out / "SHA256SUMS").read_text().splitlines()]
    report.check([n for _, n in sums] == names, f"SHA256SUMS names {[n for _, n in sums]}, want {names}")
    for digest, name in sums:
        if (out / name).is_file():
            report.check(hashlib.sha256((out / name).read_bytes()).hexdigest() == digest, f"SHA256SUMS: {name} differs")

    epoch = check_tarball(report, out / names[3], version)
    with tarfile.open(out / names[3]) as tar:
        license_text = tar.extractfile(f"vexa-{version}/LICENSE").read().decode()
    if epoch is not None:
        check_deb(report, out / names[0], "amd64", version, epoch, license_text)
        check_deb(report, out / names[1], "arm64", version, epoch, license_text)
        check_zip(report, out / names[2], version, epoch, license_text)
    for failure in report.failures:
        print(f"check-release: {failure}")
    print(f"check-release: {out}: {'fine' if not report.failures else f'{len(report.failures)} faults'}")
    return 1 if report.failures else 0


if __name__ == "__main__":
    sys.exit(main())
