# SPDX-License-Identifier: MIT
"""usage: make_sbom.py VERSION COMMIT FOLDER

Prints an SPDX 2.3 bill of materials of the packages in a folder: each with its digests, and the runtime libraries
that the compilers link into the programs, in the versions that are installed here.
"""
import datetime
import hashlib
import json
import os
import pathlib
import subprocess
import sys

GCC_LICENSE = "GPL-3.0-or-later WITH GCC-exception-3.1"
# Debian package -> licence and which programs it becomes a part of.
LINKED = {
    "libstdc++-12-dev": (GCC_LICENSE, ".deb"),
    "libgcc-12-dev": (GCC_LICENSE, ".deb"),
    "gcc-mingw-w64-x86-64-posix-runtime": (GCC_LICENSE, ".zip"),
    "mingw-w64-x86-64-dev": ("ZPL-2.1 AND MIT AND LicenseRef-public-domain", ".zip"),
    "libxxhash-dev": ("BSD-2-Clause", (".deb", ".zip")),
}


def installed_version(package):
    return subprocess.run(["dpkg-query", "-W", "-f", "${Version}", package], check=True, capture_output=True,
                          text=True).stdout


def identifier(name):
    return "SPDXRef-" + "".join(character if character.isalnum() else "-" for character in name)


def artefact(path, version):
    content = path.read_bytes()
    return {
        "SPDXID": identifier(path.name), "name": path.name, "versionInfo": version,
        "packageFileName": path.name, "downloadLocation": "NOASSERTION", "filesAnalyzed": False,
        "supplier": "Organization: The fyrn authors", "licenseConcluded": "MIT", "licenseDeclared": "MIT",
        "copyrightText": "Copyright (c) 2026 The fyrn authors",
        "checksums": [{"algorithm": name.upper(), "checksumValue": hashlib.new(name, content).hexdigest()}
                      for name in ("sha1", "sha256")],
    }


def library(package, license_name):
    version = installed_version(package)
    return {
        "SPDXID": identifier(package), "name": package, "versionInfo": version, "filesAnalyzed": False,
        "downloadLocation": "NOASSERTION", "supplier": "Organization: Debian",
        "licenseConcluded": license_name, "licenseDeclared": license_name, "copyrightText": "NOASSERTION",
        "externalRefs": [{"referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
                          "referenceLocator": f"pkg:deb/debian/{package.replace('+', '%2B')}@{version}"}],
    }


def relationship(subject, kind, other):
    return {"spdxElementId": subject, "relationshipType": kind, "relatedSpdxElement": other}


def main(version, commit, folder):
    paths = sorted(path for path in pathlib.Path(folder).iterdir() if path.name.endswith((".deb", ".zip", ".tar.gz")))
    moment = datetime.datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), datetime.timezone.utc)
    relationships = [relationship("SPDXRef-DOCUMENT", "DESCRIBES", identifier(path.name)) for path in paths]
    for package, (_, suffix) in LINKED.items():
        # The libraries hold no program, and so nothing of the compiler's.
        relationships += [relationship(identifier(package), "STATIC_LINK", identifier(path.name)) for path in paths
                          if path.name.endswith(suffix)
                          and (not path.name.startswith("lib") or package == "libxxhash-dev")]
    document = {
        "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT", "name": f"fyrn-{version}",
        "documentNamespace": f"https://fyrn.example/spdx/fyrn-{version}-{commit}",
        "creationInfo": {"created": moment.strftime("%Y-%m-%dT%H:%M:%SZ"), "creators": ["Organization: The fyrn authors"]},
        "hasExtractedLicensingInfos": [{"licenseId": "LicenseRef-public-domain",
                                        "extractedText": "Placed in the public domain by its authors."}],
        "packages": [artefact(path, version) for path in paths]
                    + [library(package, license_name) for package, (license_name, _) in LINKED.items()],
        "relationships": relationships,
    }
    print(json.dumps(document, indent=2, sort_keys=True))


if __name__ == "__main__":
    main(*sys.argv[1:])
