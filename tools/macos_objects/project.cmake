# Read by the project right after its languages: what the toolkit asks for and this system has not in the form of
# macOS.
add_library(WrapOpenGL::WrapOpenGL INTERFACE IMPORTED)
