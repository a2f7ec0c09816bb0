// Loaded before all other libraries of a program: no texts of its are translated. Where AddressSanitizer is loaded into a
// program that was built without it, the C library waits for ever for the lock of the translations: a library asks for its
// own before the locks work.

extern "C" {

char* bindtextdomain(char const*, char const* folder)
{
    return const_cast<char*>(folder);
}

char* bind_textdomain_codeset(char const*, char const* codeset)
{
    return const_cast<char*>(codeset);
}
}
