# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Completion of fyrnsum's options, their values and files for bash. The program itself tells options and functions.

# The last item of a list with commas, completed.
_fyrnsum_items() { # LIST WORDS
  local before=
  case $1 in *,*) before=${1%,*}, ;; esac
  compgen -P "$before" -W "$2" -- "${1##*,}"
}

_fyrnsum_values() { # OPTION TEXT
  case $1 in
    -a | --algorithm) _fyrnsum_items "$2" "$(command fyrnsum --list-functions | cut -d ' ' -f 1) sha2 sha3" ;;
    --audit | --update) compgen -f -- "$2" ;;
    --accept-changes) compgen -W all -- "$2" ;;
    --format) compgen -W 'gnu bsd sfv hashdeep bagit' -- "$2" ;;
    -C | --directory) compgen -d -- "$2" ;;
  esac
}

_fyrnsum() {
  # The words as they were typed: bash cuts words at "=" and replaces only what stands behind it.
  local line=${COMP_LINE:0:COMP_POINT} word option
  word=${line##*[[:space:]]}
  line=${line%"$word"}
  read -ra line <<< "$line"
  COMPREPLY=()
  case $word in
    --*=*)
      option=${word%%=*}
      mapfile -t COMPREPLY < <(_fyrnsum_values "$option" "${word#*=}")
      case $COMP_WORDBREAKS in
        *=*) ;;
        *) COMPREPLY=("${COMPREPLY[@]/#/$option=}") ;;
      esac
      ;;
    --*)
      mapfile -t COMPREPLY < <(compgen -W "$(command fyrnsum --help | sed -nE 's/^ +(-., )?(--[a-z0-9-]+=?).*/\2/p')" -- "$word")
      # What takes a value is not followed by a space.
      if [[ ${#COMPREPLY[@]} = 1 && ${COMPREPLY[0]} == *= ]]; then compopt -o nospace 2>/dev/null; fi
      ;;
    *)
      mapfile -t COMPREPLY < <(_fyrnsum_values "${line[-1]}" "$word")
      ;;
  esac
}

# Where nothing is offered, readline completes names of files.
complete -o default -F _fyrnsum fyrnsum
