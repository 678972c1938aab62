# Completion of vorn for bash. vorn itself knows what may come next.
_vorn() {
   local line=${COMP_LINE:0:COMP_POINT} words candidate
   read -ra words <<< "$line"
   if [[ $line == *[[:space:]] ]]; then
      words+=( '' )
   fi
   # What readline replaces, $2, begins after the last = of the word.
   local kept=${words[-1]%"$2"}
   COMPREPLY=()
   while IFS=$'\t' read -r candidate _; do
      COMPREPLY+=( "${candidate#"$kept"}" )
   done < <( "${1/#\~/$HOME}" complete -- "${words[@]:1}" 2> /dev/null )
   if [[ ${COMPREPLY[0]} == *= ]]; then
      compopt -o nospace 2> /dev/null
   fi
}
complete -o default -F _vorn vorn
