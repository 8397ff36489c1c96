# What doxygen does not understand of the links between the pages: a heading inside a page, and a sample program.
s/(\.md)#[-a-z0-9]+\)/\1)/g
s|\[([a-z_]+\.cpp)\]\((\.\./examples/)?\1\)|\\ref \1|g
