# Turns the headers' plain comments into those that Doxygen reads: the first one of a file, those before a declaration,
# and those behind one.
1s,^/\*,/** @file,
2,$s,^\( *\)/\*\( \|$\),\1/**\2,
s,^\( *[^ /*].*\) /\* ,\1 /**< ,
