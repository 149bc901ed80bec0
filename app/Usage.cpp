// SPDX-License-Identifier: MIT
#include "app/Usage.h"

#include "app/Console.h"
#include "support/BuildStamp.h"

namespace {

constexpr const wchar_t* usageText = LR"(
This application calculates the hash of the specified file(s).

Usage: %s <-hash> [-salt] [-salttype] [-subdirs] [-verbosity] [-poly16] [-poly32] [-poly64] [-rename] [-renamedel] <[FILE]> <[DIR]>

Mandatory parameters:
  -hash      : The hash function. This parameter can be used multiple times.
               Must be one of the following:
               ALL
               BLAKE2-128  BLAKE2-160  BLAKE2-224  BLAKE2-256  BLAKE2-384 BLAKE2-512
               CRC-16  CRC-32  CRC-64
               MD4  MD5  MD6-128  MD6-160  MD6-192  MD6-224  MD6-256  MD6-384  MD6-512
               KECCAK-224  KECCAK-256  KECCAK-384  KECCAK-512
               SHA1  SHA2-256  SHA2-384  SHA2-512  SHA3-224  SHA3-256  SHA3-384  SHA3-512
               SHAKE-128  SHAKE-256  SHAKE-512
               SKEIN-256  SKEIN-512  SKEIN-1024
               TIGER1-128  TIGER1-160  TIGER1-192  TIGER2-128  TIGER2-160  TIGER2-192
               WHIRLPOOL

  FILE : One (or multiple) file name(s) for which to calculate the hash

  DIR  : One (or multiple) directories for which to calculate the hash


Basic parameters (optional):
  -salt      : The file that contains the salt.

  -salttype  : Where to apply the salt:
               none   -> don't use salt (default)
               before -> add the salt before the data
               after  -> add the salt after the data
               both   -> add the salt both before and after the data

  -subdirs   : Go into sub-directories and do all the files and (sub-)directories

  -verbosity : The output verbosity:
               1 -> Compact  show the hash
               2 -> Normal   show the hash and the file name (default)
               3 -> Verbose  show the hash and the full qualified path


Advanced parameters (optional):
  -poly16    : The polynomial used for the CRC-16 hash (default = 0xa001).
               0x8005  -> ANSI
               0xa001  -> ANSI reversed
               0x1021  -> CCITT
               0x8408  -> CCITT reversed

  -poly32    : The polynomial used for the CRC-32 hash (default = 0xedb88320).
               0x1edc6f41  -> Castagnoli (iSCSI & SCTP, G.hn payload, SSE4.2)
               0x82f63b78  -> Castagnoli reversed (iSCSI & SCTP, G.hn payload, SSE4.2)
               0x741b8cd7  -> Koopman
               0xeb31d82e  -> Koopman reversed
               0x814141ab  -> Aviation (AIXM)
               0xd5828281  -> Aviation reversed (AIXM)
               0x04c11db7  -> IEEE (V.42, Ethernet, SATA, MPEG-2, PNG, POSIX)
               0xedb88320  -> IEEE reversed (V.42, Ethernet, SATA, MPEG-2, PNG, POSIX)

  -poly64    : The polynomial used for the CRC-64 hash (default = 0xd800000000000000).
               0x000000000000001b  -> ISO
               0xd800000000000000  -> ISO reversed

  -rename    : Rename the file(s) from "filename.ext" to "<HASH>.ext"
               If the file already exists, it will be renamed to "<HASH>_<COUNT>.ext"
               <COUNT> is a number in the range [00,99]
               BE CAREFUL: THIS CHANGES THE FILE'S NAME!

  -renamedel : Rename the file(s) from "filename.ext" to "<HASH>.ext"
               If the file already exists, it will not be renamed but deleted.
               BE CAREFUL: THIS POTENTIALLY DELETES THE FILE!


Examples:
  fyrn -hash=MD5 -subdirs "C:\Temp" "D:\My Files\File 1.txt" "D:\My Files\File 2.txt"

  fyrn -verbosity=3 -hash=CRC-32 -hash=Whirlpool "C:\Temp\*.jpg" "C:\My Files\File 1.txt"

  fyrn -hash=SHA1 -hash=SHA2-256 -hash=SHA3-512 -salt="C:\Salt.hex" -salttype=before *.exe

)";

} // namespace

void PrintUsage(const wchar_t* invocation) {
    ConsolePrintf(usageText, invocation);
    ConsolePrintf(L"fyrn %s (%s)\n", build_stamp::version, build_stamp::date);
}
