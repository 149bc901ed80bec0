# SPDX-License-Identifier: MIT
# Completion of fyrn's options, their values and files for fish.

function __fyrn_options
    printf '%s\t%s\n' \
        -hash= 'hash function' \
        -salt= 'file that contains the salt' \
        -salttype= 'where to apply the salt' \
        -subdirs 'go into sub-directories' \
        -verbosity= 'output verbosity' \
        -poly16= 'polynomial of CRC-16: 0x and 4 digits, low byte first' \
        -poly32= 'polynomial of CRC-32: 0x and 8 digits, low byte first' \
        -poly64= 'polynomial of CRC-64: 0x and 16 digits, low byte first' \
        -rename 'RENAME each file to its digest' \
        -renamedel 'rename each file to its digest, DELETE those whose digest is taken'
end

function __fyrn_values
    switch (commandline --current-token --cut-at-cursor)
        case '-hash=*'
            printf '%s\n' -hash={ALL,BLAKE2-{128,160,224,256,384,512},CRC-{16,32,64},KECCAK-{224,256,384,512}} \
                -hash={MD4,MD5,MD6-{128,160,192,224,256,384,512},SHA1,SHA2-{256,384,512}} \
                -hash={SHA3-{224,256,384,512},SHAKE-{128,256,512},SKEIN-{256,512,1024}} \
                -hash={TIGER{1,2}-{128,160,192},WHIRLPOOL}
        case '-salttype=*'
            printf '%s\n' -salttype={none,before,after,both}
        case '-verbosity=*'
            printf '%s\t%s\n' -verbosity=1 'digests only' -verbosity=2 'names, too' -verbosity=3 'whole paths'
    end
end

function __fyrn_token_is
    string match --quiet --regex -- $argv[1] (commandline --current-token --cut-at-cursor)
end

complete --command fyrn --condition '__fyrn_token_is "^-[a-z0-9]*\$"' --arguments '(__fyrn_options)'
complete --command fyrn --condition '__fyrn_token_is "^-(hash|salttype|verbosity)="' --no-files --arguments '(__fyrn_values)'
