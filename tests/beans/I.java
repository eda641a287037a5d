/** Is an element of a class that is called as the code of int an object all the same? */
public class I {}
