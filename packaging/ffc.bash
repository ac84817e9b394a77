# Completion of ffc for bash.
_ffc() {
  local word=${COMP_WORDS[COMP_CWORD]} former=${COMP_WORDS[COMP_CWORD-1]} options
  case $former in
    --align) COMPREPLY=($(compgen -W 'right left' -- "$word")); return ;;
    --method) COMPREPLY=($(compgen -W 'weighted average' -- "$word")); return ;;
    --high-pass) COMPREPLY=($(compgen -W 'release4 release4-inner release3' -- "$word")); return ;;
    --to) COMPREPLY=($(compgen -W 'png tif fits ser raw' -- "$word")); return ;;
    --pixel-format)
      COMPREPLY=($(compgen -W "$(echo Mono{8,10,12,14,16} Bayer{RG,GB,GR,BG}{8,10,12,16})" -- "$word"))
      return
      ;;
  esac
  if [ "$COMP_CWORD" -eq 1 ]; then
    COMPREPLY=($(compgen -W 'make apply check inspect convert defects library --help --version' -- "$word"))
    return
  fi
  options='--pixel-format --align --raw --json --quiet --help'
  case ${COMP_WORDS[1]} in
    make) options+=' --dark --bright --out --expect-gray --method --system-gain --dark-noise --camera --serial --exposure --gain --black-level
      --temperature --force --dry-run' ;;
    apply) options+=' --library --camera --serial --exposure --gain --defects --files-from --shard --threads --out --in-place --resume --force --dry-run' ;;
    check) options+=' --defects --dark --limit --levels --high-pass --details' ;;
    defects) options+=' --dark --bright --out --map --bright-percent --dark-deviations --noise-times --force --dry-run' ;;
    library) options+=' --force' ;;
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
