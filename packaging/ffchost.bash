# Completion of ffchost for bash.
_ffchost() {
  local word=${COMP_WORDS[COMP_CWORD]} former=${COMP_WORDS[COMP_CWORD-1]}
  case $former in
    --camera) COMPREPLY=($(compgen -W 'simulated replay:' -- "$word")); return ;;
    --format) COMPREPLY=($(compgen -W 'tif png fits ser' -- "$word")); return ;;
    --frames) COMPREPLY=($(compgen -W '1 2 4 8 16' -- "$word")); return ;;
    --language) COMPREPLY=($(compgen -W 'en zh' -- "$word")); return ;;
    --mode) COMPREPLY=($(compgen -W 'none flatfield vignetting unknown' -- "$word")); return ;;
    --align) COMPREPLY=($(compgen -W 'right left' -- "$word")); return ;;
    --block-size) COMPREPLY=($(compgen -W '16 32 64 128' -- "$word")); return ;;
    --pixel-format)
      COMPREPLY=($(compgen -W "$(echo Mono{8,10,12,14,16} Bayer{RG,GB,GR,BG}{8,10,12,16})" -- "$word"))
      return
      ;;
  esac
  if [[ $word == -* ]]; then
    COMPREPLY=($(compgen -W '--help --version --headless --no-wait --dark-delay --record --format --corrected --stop-on-loss
      --restore-settings --list-cameras --verbose --screenshots --plugin --frames --expect-gray --language --out --save-frames
      --limit --shading-limit --prnu-limit --dsnu-limit --align --camera --pixel-format --size --seed --mode --flash
      --block-size' -- "$word"))
  else
    COMPREPLY=($(compgen -f -- "$word"))
  fi
}
complete -o filenames -F _ffchost ffchost
