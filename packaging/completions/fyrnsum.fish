# SPDX-License-Identifier: MIT
# Completion of fyrnsum's options, their values and files for fish. The program itself tells the functions.

function __fyrnsum_functions
    set -l before (commandline --current-token --cut-at-cursor | string replace --regex '^(--algorithm=|-a)' '' |
        string match --regex '^.*,')
    for name in (command fyrnsum --list-functions | string replace --regex ' .*' '') sha2 sha3
        echo "$before$name"
    end
end

set -l fyrnsum complete --command fyrnsum
$fyrnsum --short-option a --long-option algorithm --no-files --require-parameter --arguments '(__fyrnsum_functions)' --description 'hash functions'
$fyrnsum --short-option l --long-option length --no-files --require-parameter --description 'length of the digest in bits'
$fyrnsum --short-option b --long-option binary --description 'put * before the name'
$fyrnsum --short-option c --long-option check --description 'check the files that lists name'
$fyrnsum --long-option tag --description 'write lines with the name of the function'
$fyrnsum --short-option t --long-option text --description 'put a blank before the name'
$fyrnsum --long-option untagged --description 'write lines that begin with the digest'
$fyrnsum --long-option base64 --description 'write digests in base64'
$fyrnsum --long-option raw --description 'write the digest of one file as bytes'
$fyrnsum --short-option z --long-option zero --description 'end lines with NUL'
$fyrnsum --long-option json --description 'write a JSON object for each file'
$fyrnsum --long-option format --no-files --require-parameter --arguments 'gnu bsd sfv hashdeep bagit' --description 'write lines for other programs'
$fyrnsum --short-option o --long-option output --require-parameter --force-files --description 'write to a file'
$fyrnsum --long-option resume --description 'go on where a run was killed'
$fyrnsum --short-option r --long-option recursive --description 'hash all files below directories'
$fyrnsum --short-option L --long-option follow --description 'follow symbolic links in directories'
$fyrnsum --short-option x --long-option one-file-system --description 'stay on one file system'
$fyrnsum --long-option exclude --no-files --require-parameter --description 'leave out what matches'
$fyrnsum --long-option include --no-files --require-parameter --description 'take in files that match'
$fyrnsum --long-option exclude-from --require-parameter --force-files --description 'leave out what matches a line of a file'
$fyrnsum --long-option files-from --require-parameter --force-files --description 'take names from lines of a file'
$fyrnsum --long-option files0-from --require-parameter --force-files --description 'take names from a file with NUL'
$fyrnsum --short-option C --long-option directory --no-files --require-parameter --arguments '(__fish_complete_directories)' --description 'names in lists are relative to it'
$fyrnsum --long-option basename --description 'look for the last component of listed names'
$fyrnsum --long-option ignore-missing --description 'pass over listed files that are not there'
$fyrnsum --long-option quiet --description 'do not print OK'
$fyrnsum --long-option status --description 'print nothing'
$fyrnsum --long-option strict --description 'fail on malformed lines'
$fyrnsum --short-option w --long-option warn --description 'tell of malformed lines'
$fyrnsum --long-option audit --require-parameter --force-files --description 'compare a tree with a list'
$fyrnsum --long-option update --require-parameter --force-files --description 'the same, and write the list anew'
$fyrnsum --long-option accept-changes --description 'list changed files anew'
$fyrnsum --long-option quick --description 'do not read files of known size and time'
$fyrnsum --short-option v --long-option verbose --description 'also tell of what is the same'
$fyrnsum --short-option j --long-option jobs --no-files --require-parameter --description 'files hashed at the same time'
$fyrnsum --long-option progress --description 'show how far the run has come'
$fyrnsum --long-option no-progress --description 'do not show how far the run has come'
$fyrnsum --long-option debug --description 'tell which implementations are in use'
$fyrnsum --long-option list-functions --description 'list the hash functions'
$fyrnsum --long-option help --description 'show help'
$fyrnsum --long-option version --description 'show the version'
