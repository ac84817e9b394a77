# Completion of ffc for bash.
_ffc() {
  local word=${COMP_WORDS[COMP_CWORD]} former=${COMP_WORDS[COMP_CWORD-1]} options
  case $former in
    --align) COMPREPLY=($(compgen -W 'right left' -- "$word")); return ;;
    --method) COMPREPLY=($(compgen -W 'weighted average' -- "$word")); return ;;
    --to) COMPREPLY=($(compgen -W 'png tif ser raw' -- "$word")); return ;;
    --pixel-format)
      COMPREPLY=($(compgen -W "$(echo Mono{8,10,12,14,16} Bayer{RG,GB,GR,BG}{8,10,12,16})" -- "$word"))
      return
      ;;
  esac
  if [ "$COMP_CWORD" -eq 1 ]; then
    COMPREPLY=($(compgen -W 'make apply check inspect convert --help --version' -- "$word"))
    return
  fi
  options='--pixel-format --align --raw --json --quiet --help'
  case ${COMP_WORDS[1]} in
    make) options+=' --dark --bright --out --expect-gray --method --system-gain --dark-noise --camera --serial --exposure --gain --black-level
      --temperature --force --dry-run' ;;
    apply) options+=' --files-from --shard --threads --out --in-place --resume --force --dry-run' ;;
    check) options+=' --dark --limit' ;;
    inspect) options+=' --plot' ;;
    convert) options+=' --files-from --shard --threads --to --out --force --dry-run' ;;
  esac
  if [[ $word == -* ]]; then
    COMPREPLY=($(compgen -W "$options" -- "$word"))
  else
    COMPREPLY=($(compgen -f -- "$word"))
  fi
}
complete -o filenames -F _ffc ffc
