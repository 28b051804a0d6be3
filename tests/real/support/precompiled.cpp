// The precompiled header of the real tests is made for this file, which holds nothing else.
