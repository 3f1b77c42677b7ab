# Turns the C headers' comments into documentation: of what follows them, of what stands
# before them in the line, and of the file.
1 s,^/\*$,/** @file,
s,^/\* ---- \(.*\) ---- \*/$,/* \1 */,
t
s,^/\*$,/**,
s,^\( *\)/\* ,\1/** ,
s,\([;\,]\) */\* ,\1 /**< ,
