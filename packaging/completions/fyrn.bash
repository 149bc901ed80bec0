# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Completion of fyrn's options, their values and files for bash.

# The values that begin with the text given. Names of hash functions are taken in lower case, too.
_fyrn_values() { # OPTION TEXT
  case $1 in
    hash) compgen -W "ALL $(echo BLAKE2-{128,160,224,256,384,512} CRC-{16,32,64} KECCAK-{224,256,384,512} MD4 MD5 \
      MD6-{128,160,192,224,256,384,512} SHA1 SHA2-{256,384,512} SHA3-{224,256,384,512} SHAKE-{128,256,512} \
      SKEIN-{256,512,1024} TIGER{1,2}-{128,160,192} WHIRLPOOL)" -- "${2^^}" ;;
    salttype) compgen -W 'none before after both' -- "${2,,}" ;;
    verbosity) compgen -W '1 2 3' -- "$2" ;;
  esac
}

_fyrn() {
  # The word as it was typed: bash cuts words at "=" and replaces only what stands behind it.
  local line=${COMP_LINE:0:COMP_POINT} word option
  word=${line##*[[:space:]]}
  option=${word%%=*}
  COMPREPLY=()
  case $word in
    -hash=* | -salttype=* | -verbosity=*)
      mapfile -t COMPREPLY < <(_fyrn_values "${option#-}" "${word#*=}")
      case $COMP_WORDBREAKS in
        *=*) ;;
        *) COMPREPLY=("${COMPREPLY[@]/#/$option=}") ;;
      esac
      ;;
    -*=*) ;; # files after -salt=; a polynomial is the user's own
    -*)
      mapfile -t COMPREPLY < <(compgen -W '-hash= -salt= -salttype= -subdirs -verbosity= -poly16=0x -poly32=0x
        -poly64=0x -rename -renamedel' -- "$word")
      # What takes a value is not followed by a space.
      if [[ ${COMPREPLY[0]-} == *=* ]]; then compopt -o nospace 2>/dev/null; fi
      ;;
  esac
}

# Where nothing is offered, readline completes names of files.
complete -o default -F _fyrn fyrn
