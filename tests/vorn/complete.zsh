# complete.zsh FOLDER VORN LINE: prints what an interactive zsh makes of the line and a tab, with the
# completion in the folder.
zmodload zsh/zpty
answer=$( mktemp )
zpty shell zsh -f -i
zpty -w shell "path=( ${(q)2:h} \$path ) fpath=( ${(q)1} \$fpath )
   autoload -Uz compinit; compinit -u -D
   tell() { print -r -- \"\$BUFFER|\" > $answer; BUFFER=exit; zle accept-line }
   zle -N tell; bindkey '^X' tell; bindkey '^I' complete-word; setopt no_beep"
zpty -w -n shell "$3"$'\t\x18'
while zpty -r shell ignored; do; done
cat $answer
rm $answer
